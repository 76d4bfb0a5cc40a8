// The words of what CoreModels::getCatalogue() gives. All but the first two name the children of
// an entry, which hold text.
#pragma once

namespace MVR::CatalogueWord {

/// The whole; its children are the entries.
constexpr const char* kCatalogue = "Catalogue";
/// One kind of tool, or one model.
constexpr const char* kEntry = "entry";

constexpr const char* kName = "name";
constexpr const char* kVersion = "version";
constexpr const char* kAbout = "about";
/// Any number of them.
constexpr const char* kCategory = "category";
/// Of a tool: the kind, for CoreTools::create().
constexpr const char* kType = "type";
/// Of a model: the path, for CoreModels::load().
constexpr const char* kFile = "file";
/// Of a model: the name of an entry that it uses. Any number of them.
constexpr const char* kRequired = "required";

} // namespace MVR::CatalogueWord
