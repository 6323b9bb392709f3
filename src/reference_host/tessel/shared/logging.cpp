#include <boost/log/sources/severity_feature.hpp>

#include "tessel/shared/logging.hpp"

namespace tessel::shared::logging {

foundation::log::basic_diagnostic_logger<char>& getLogger() {
  // Never destroyed: a component may still log while the process ends.
  static auto* const logger = [] {
    boost::log::attribute_set attributes;
    attributes["Severity"] = boost::log::sources::aux::severity_level<int>();
    return new foundation::log::basic_diagnostic_logger<char>(boost::log::core::get(),
                                                              std::move(attributes));
  }();
  return *logger;
}

}  // namespace tessel::shared::logging
