#include "plugins/libraries/empty_plugin.h"

namespace MVR {

class EmptyPlugin::Code final : public CCamera {
public:
    using CCamera::CCamera;
};

EmptyPlugin::EmptyPlugin()
    : BuiltInPlugin({"Empty Plugin", "core/EmptyPlugin",
                     "This plugin is an empty object and does nothing. Internal purposes only",
                     "This plugin is an empty object and does nothing."}) {}

CCamera* EmptyPlugin::create(CCamera::CreateParam* param) {
    return new Code(param);
}

} // namespace MVR
