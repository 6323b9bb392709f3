#include <simdjson.h>

#include <stdexcept>

#include "peers.hpp"

namespace benchmarks {

class SimdjsonPeer::Impl {
 public:
  explicit Impl(const std::string& text) : padded_(text) {}

  bool parse() {
    simdjson::dom::element root;
    const simdjson::error_code error = parser_.parse(padded_).get(root);
    if (error != simdjson::SUCCESS) throw std::runtime_error(simdjson::error_message(error));
    return root.is_object();
  }

 private:
  simdjson::padded_string padded_;
  simdjson::dom::parser parser_;
};

SimdjsonPeer::SimdjsonPeer(const std::string& text) : impl_(std::make_unique<Impl>(text)) {}

SimdjsonPeer::~SimdjsonPeer() = default;

bool SimdjsonPeer::parse() {
  return impl_->parse();
}

}  // namespace benchmarks
