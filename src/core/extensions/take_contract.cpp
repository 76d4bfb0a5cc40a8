#include "core/extensions/take_contract.h"

#include "core/base/sdk/log.h"
#include "core/contract/core_interface.h"
#include "core/services/core_services.h"
#include "core/services/take_notes.h"

#include <utility>

namespace MVR {

double TakeContract::getDelay() {
    return services_.getTakeDelay();
}

bool TakeContract::end(std::string reason) {
    if (!services_.isRecording())
        return false;
    Log(Log::Error).write("The take is ended", reason, Log::OwnLevel);
    services_.getTakeNotes().add({CoreTakeNote::kEnded, "", "", 0, std::move(reason)});
    services_.getInterface().stopRecording();
    return true;
}

std::vector<CoreTakeNote> TakeContract::list() {
    return services_.getTakeNotes().list();
}

} // namespace MVR
