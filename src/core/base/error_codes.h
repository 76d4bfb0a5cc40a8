// The table of the codes that the core itself reports: a new code is one row here.
#pragma once

#include "core/base/sdk/error_code.h"

#include <cstdint>

namespace MVR {

/// A row: what ErrorCode::get() takes.
struct CodeRow {
    const char* identifier; ///< unique, in capitals; all that stays the same from run to run
    std::int32_t type;      ///< an ErrorCode::Type
    const char* message;
};

/// The rows. Each comment says the cause, and what to do about it. The common codes come first, in
/// the order of their values.
namespace Codes {
// Common codes. The core itself reports four of them; the others are for tools and adaptors.
inline constexpr CodeRow kGeneral{"GENERAL", ErrorCode::Error, "General error"};
inline constexpr CodeRow kIndexOutOfBounds{"INDEXOUTOFBOUNDS", ErrorCode::Error,
                                           "Trying to reach an element outside reach of vector."};
// A null node for a message or a link: a fault of the caller.
inline constexpr CodeRow kNull{"NULL", ErrorCode::Error, "Received NULL object"};
inline constexpr CodeRow kException{"EXCEPTION", ErrorCode::Error, "An exception was caught"};
inline constexpr CodeRow kFatal{"FATAL", ErrorCode::Fatal, "A fatal error occured"};
inline constexpr CodeRow kNotImplemented{"NOTIMPLEMENTED", ErrorCode::Error,
                                         "Function is not implemented"};
// A tool's data isn't "MVR_Plugin", belongs to another tool, or names a parent that isn't in the
// scene: correct the data.
inline constexpr CodeRow kInvalidData{"INVALIDOKFDATASTRUCTURE", ErrorCode::Error,
                                      "Invalid OKF data structure detected"};
// No loaded library has a tool of this type: install the library, or correct the type.
inline constexpr CodeRow kPluginNotFound{"PLUGINNOTFOUND", ErrorCode::Error,
                                         "The specified plugin type was not found"};
// The plug-in returned no tool object: a fault of its library, whose lines in the log may say more.
inline constexpr CodeRow kCouldNotInstanciate{"COULDNOTINSTANCIATEPLUGIN", ErrorCode::Error,
                                              "Error instanciating plugin"};

// The table itself. A code was registered at an entry that isn't the table, or with a value that is
// in use: call the singleton with a new ErrorCode.
inline constexpr CodeRow kNonContainer{"ERRORCODE_NONCONTAINER", ErrorCode::Error,
                                       "Trying to register a code to a non-container"};
inline constexpr CodeRow kNonUniqueValue{"ERRORCODE_NONUNIQUEVALUE", ErrorCode::Error,
                                         "Trying to register a code with a non-unique value"};

// Messages. Of two nodes only one knows of their link: a fault in a node that overrides the links'
// operations.
inline constexpr CodeRow kLinkMismatch{"MESSAGE_LINKMISMATCH", ErrorCode::Fatal,
                                       "The MessageNode network contains a link mismatch."};
// There is no link to end; nothing needs to be done.
inline constexpr CodeRow kNotListening{"MESSAGE_NOT_LISTENING", ErrorCode::Notice,
                                       "This node is not listening to the specified node."};

// Libraries of tools. The path is loaded, or the library listed, already; nothing needs to be done.
inline constexpr CodeRow kLibraryAlreadyLoaded{"LIBRARY_ALREADYLOADED", ErrorCode::Notice,
                                               "The specified library is already loaded"};
inline constexpr CodeRow kLibraryAlreadyListed{"LIBRARY_ALREADYINLIST", ErrorCode::Notice,
                                               "The specified library is already in list"};
// The system can't load the file: the log's "reason" says what is missing.
inline constexpr CodeRow kLibraryCouldNotLoad{"LIBRARY_COULDNOTLOAD", ErrorCode::Error,
                                              "The specified library could not be loaded"};
// The file isn't a library of tools: move it to another folder.
inline constexpr CodeRow kLibraryNoVersion{"LIBRARY_GETVERSIONNOTFOUND", ErrorCode::Warning,
                                           "Could not bind version verification function"};
// The library was built for another version of the contract: build it anew.
inline constexpr CodeRow kLibraryWrongVersion{
    "LIBRARY_WRONGVERSION", ErrorCode::Error,
    "The version of the plugin interface does not match the system interface"};
// The library doesn't export `getPlugin`.
inline constexpr CodeRow kLibraryNoPlugins{"LIBRARY_GETPLUGINNOTFOUND", ErrorCode::Error,
                                           "Could not bind plugin retreiver function"};
// Plugin::create() was called without a library, or without a descriptor.
inline constexpr CodeRow kPluginNoLibrary{"PLUGIN_NOPARENTLIBRARY", ErrorCode::Error,
                                          "Plugin is missing owner (src==NULL)"};
inline constexpr CodeRow kPluginNoHandler{"PLUGIN_NOHANDLER", ErrorCode::Error,
                                          "Plugin is missing handler"};

// Models. A tool below another couldn't be made, and is left out: the lines before say why.
inline constexpr CodeRow kSubPluginMissing{"INSTANCIATOR_COULDNOTCREATESUBPLUGIN",
                                           ErrorCode::Warning,
                                           "Some plugins could not be instanciated"};
// There is no such file, or it is damaged: the log has line and column.
inline constexpr CodeRow kModelUnreadable{"MODEL_UNREADABLE", ErrorCode::Error,
                                          "The model's file can't be read"};
// The file holds something else: choose another file.
inline constexpr CodeRow kModelInvalid{"MODEL_INVALID", ErrorCode::Error,
                                       "The file holds no model"};
// None, or not all, of its tools could be made: the log says why for each.
inline constexpr CodeRow kModelNothingCreated{"MODEL_NOTHINGCREATED", ErrorCode::Error,
                                              "No tool of the model could be created"};
inline constexpr CodeRow kModelIncomplete{"MODEL_INCOMPLETE", ErrorCode::Warning,
                                          "Some tools of the model could not be created"};
// A scene object of a saved tool isn't in the scene: bring it back, or place the tool anew.
inline constexpr CodeRow kNodeMissing{"MODEL_NODEMISSING", ErrorCode::Warning,
                                      "A scene object of the tool isn't there"};
// A tool took itself away, or the host did, before its creation ended.
inline constexpr CodeRow kToolGone{"MODEL_TOOLGONE", ErrorCode::Warning,
                                   "The tool was removed again"};
// No tool of the tree has the name that is to be saved.
inline constexpr CodeRow kModelNoTool{"MODEL_NOTOOL", ErrorCode::Error,
                                      "There is no tool of that name"};
// The model's file can't be replaced: the log says why; the old one stays.
inline constexpr CodeRow kModelUnwritable{"MODEL_UNWRITABLE", ErrorCode::Error,
                                          "The model's file can't be written"};

// Tools by name. The attachment ends, so there are no tools any more: ask before detaching.
inline constexpr CodeRow kDetaching{"CORE_DETACHING", ErrorCode::Error, "The attachment ends"};
// The tool's library or the tool itself refused: the faults of the operation tell why.
inline constexpr CodeRow kToolNotCreated{"TOOL_NOTCREATED", ErrorCode::Error,
                                         "The tool could not be created"};
inline constexpr CodeRow kToolBadName{"TOOL_BADNAME", ErrorCode::Error,
                                      "A tool's name must not be blank"};
// What should be bindings, or the mapping of an input, is another element: nothing changed.
inline constexpr CodeRow kToolBadProfile{
    "TOOL_BADPROFILE", ErrorCode::Error,
    "The bindings are no element \"profile\", or a mapping no \"property\""};
// The mapping of an input was to change that the tool doesn't have: nothing changed.
inline constexpr CodeRow kToolNoInput{"TOOL_NOINPUT", ErrorCode::Error,
                                      "The tool has no input of that name"};

// Input. A driver refused to start its device, or to end it: its lines in the log may tell why.
inline constexpr CodeRow kInputInactive{"INPUT_INACTIVE", ErrorCode::Warning,
                                        "An input device can't listen"};
// Controls that bindings name aren't there: the bindings are kept, and work again once they are.
inline constexpr CodeRow kControlsMissing{"INPUT_CONTROLSMISSING", ErrorCode::Warning,
                                          "Some controls aren't there"};

// Recording. A take or a resimulation runs, or is being ended: wait for its end, or stop it.
inline constexpr CodeRow kAlreadyRecording{"ALREADYRECORDING", ErrorCode::Error,
                                           "Already recording"};
// The span isn't a number or has too many frames, or the host has no frame rate.
inline constexpr CodeRow kResimulateBadRange{"RESIMULATE_BADRANGE", ErrorCode::Error,
                                             "The range can't be simulated"};

// The end of an attachment. The core is in the middle of something, such as a frame, a dialog or a
// resimulation, whose objects would be freed: return to it, and detach after it has returned.
inline constexpr CodeRow kDetachNotNow{"DETACH_NOTNOW", ErrorCode::Warning,
                                       "The core can't detach from inside its own calls"};

// The main dialog. Its layout is missing: the core goes on without a dialog.
inline constexpr CodeRow kMainDialogMissing{"NOMAINDLGCOMPONENT", ErrorCode::Error,
                                            "Main dialog design structure not present"};
// The dialog is open, or isn't; nothing needs to be done.
inline constexpr CodeRow kMainDialogOpen{"MAINDLG_ALREADYOPEN", ErrorCode::Notice,
                                         "The main dialog is already open"};
inline constexpr CodeRow kMainDialogNotOpen{"MAINDLG_NOTOPEN", ErrorCode::Notice,
                                            "The main dialog is not open"};
} // namespace Codes

/// Registers the code at its first use, logs its message and returns its value.
[[nodiscard]] std::int32_t reportCode(const CodeRow& row);

/// Registers the code, unless it is registered, and reports nothing.
void registerRow(const CodeRow& row);

/// Registers the codes whose values are fixed, 1024 to 1032. Called once, when the library is
/// loaded.
void registerCommonCodes();

} // namespace MVR
