#include "plugins/libraries/root_plugin.h"

#include "plugins/contract/c_interface.h"

namespace MVR {

class RootPlugin::Code final : public CCamera {
public:
    using CCamera::CCamera;

    std::int32_t init() override {
        getInterface()->beginPanel();
        getInterface()->endPanel();
        return 0;
    }
};

RootPlugin::RootPlugin()
    : BuiltInPlugin({kName, "core/Root", "Mirvane root node.",
                     "This is the root object for Mirvane. It serves as a main container for all "
                     "Mirvane plugins."}) {}

CCamera* RootPlugin::create(CCamera::CreateParam* param) {
    return new Code(param);
}

} // namespace MVR
