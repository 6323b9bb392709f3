#include "controls/control_builders.hpp"

#include "controls/common_fields.hpp"
#include "controls/control_build.hpp"
#include "controls/control_fields.hpp"
#include "framework/diagnostics.hpp"
#include "framework/field.hpp"
#include "framework/json_access.hpp"
#include "framework/json_keys.hpp"
#include "framework/recognition.hpp"

namespace tessel::build::json::controls {

using lumocode::contentmodel::gxzero::FileBrowserData;

namespace {

const framework::Field kBrowserType{"browserType", framework::kNoRecord,
                                    "Set the browserType property",
                                    &FileBrowserData::Impl::setBrowserType};

const ControlKind kFileBrowser{"Starting to build a FileBrowser using the incoming JSON below",
                               &document::gxzero::FileBrowserNode::Builder::createFileBrowserNode,
                               &document::gxzero::FileBrowserNode::Impl::createIntoFileBrowserData};

}  // namespace

bool FileBrowserBuilderImpl::canBuild(const Value& json) const {
  framework::logDiagnostic("Checking if can build FileBrowser");
  return framework::recognizeByClassName(json, "FileBrowserControlNode");
}

Node FileBrowserBuilderImpl::build(const Model& model, const Value& json) const {
  return buildControl(kFileBrowser, model, json, [&json](const FileBrowserData& data) {
    applyControlData(data, json);
    // Irregular by contract: only this control requires "context" and "data". Neither is tested
    // for; the host answers for a missing one.
    const Value& context = json[framework::kContextKey];
    Value copy;
    const Value& fields = framework::requiredMember(context, framework::kDataKey, copy);
    framework::required(fields, data, kBrowserType);
    framework::optional(fields, data, kDefaultValue<FileBrowserData>);
  });
}

}  // namespace tessel::build::json::controls
