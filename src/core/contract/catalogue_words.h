// The words of what CoreModels::getCatalogue() gives. The first three are elements; the others name
// their children, which hold text.
#pragma once

namespace MVR::CatalogueWord {

/// The whole.
constexpr const char* kCatalogue = "Catalogue";
/// One kind of tool, or one model.
constexpr const char* kEntry = "entry";
/// A library of tools that was refused; they come after the entries.
constexpr const char* kRefused = "refused";

constexpr const char* kName = "name";
constexpr const char* kVersion = "version";
constexpr const char* kAbout = "about";
/// Any number of them.
constexpr const char* kCategory = "category";
/// Of a tool: the kind, for CoreTools::create().
constexpr const char* kType = "type";
/// Of a tool: one line for a list of tools.
constexpr const char* kDescription = "description";
/// Of a tool.
constexpr const char* kAuthor = "author";
/// Of a tool: the path of its library.
constexpr const char* kLibrary = "library";
/// Of a model: the path, for CoreModels::load(). Of what was refused: its path.
constexpr const char* kFile = "file";
/// Of what was refused: why, in English.
constexpr const char* kText = "text";
/// Of a model: the name of an entry that it uses. Any number of them.
constexpr const char* kRequired = "required";

} // namespace MVR::CatalogueWord
