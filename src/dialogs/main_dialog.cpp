#include "dialogs/main_dialog.h"

#include "core/base/error_codes.h"
#include "core/base/sdk/log.h"
#include "core/contract/adaptor_interface.h"
#include "core/contract/core_interface.h"
#include "core/services/core_services.h"
#include "plugins/instance_manager.h"
#include "plugins/instance_reference.h"

namespace MVR {

namespace {

constexpr std::int32_t kPressed = 20000; // wParam: the control's id

enum ControlId : std::uint32_t {
    kRecord = 9205,
    kResimulate = 9206,
    kUnplugAll = 9214,
};

} // namespace

MainDlg::MainDlg(CoreImplementation* core, CoreServices* services) : CoreSubSystem(core, services) {
    Log log("Constructing main dialog Core subsystem", Log::Notice);
}

MainDlg::~MainDlg() {
    Log log("DeInitializing main dialog Core subsystem", Log::Notice);
}

std::int32_t MainDlg::open(Platform::WindowHandle) {
    Log log("Opening main dialog", Log::Notice);
    return reportCode(Codes::kMainDialogMissing);
}

void MainDlg::receive(Util::Message& message, bool) {
    if (message.id == kPressed)
        onPressed(message.wParam);
}

void MainDlg::onPressed(std::uint32_t control) {
    CoreInterface& core = getServices().getInterface();
    AdaptorInterface* const adaptor = getServices().getAdaptor();
    std::int32_t code = 0; // an error is logged where the code is made
    if (control == kRecord) {
        code = core.isRecording() ? core.stopRecording() : core.startRecording();
    } else if (control == kResimulate) {
        double start = 0;
        double end = 0;
        adaptor->getRange(&start, &end);
        code = core.resimulate(adaptor->getTime(), end);
    } else if (control == kUnplugAll) {
        adaptor->beginUndo("Unplug tool");
        if (InstanceReference* const root = getServices().getTree().getRoot())
            root->remove(false);
        adaptor->endUndo();
    }
    static_cast<void>(code);
}

} // namespace MVR
