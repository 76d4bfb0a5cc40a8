#pragma once

#include "core/util/sdk/singleton.h"
#include "plugins/libraries/library.h"

namespace MVR {

/// The library of the plug-ins that are built into the core; its path is "Core". It comes first
/// among the libraries, so that its plug-ins precede others of the same name.
class CoreLibrary final : public Util::Singleton<CoreLibrary>, public Library {
public:
    /// Creates the built-in plug-ins. Called once, when the core is loaded.
    void addBuiltInPlugins();

    void destroy() override { destroySingleton(); }
    ~CoreLibrary() override;

private:
    friend class Util::Singleton<CoreLibrary>;
    CoreLibrary();
};

} // namespace MVR
