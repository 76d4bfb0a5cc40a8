// The words that the catalogue reads in a model.
#pragma once

namespace MVR::CatalogueWord {

constexpr const char* kVersion = "version";
constexpr const char* kAbout = "about";
constexpr const char* kCategory = "category"; ///< any number of them
constexpr const char* kFolder = "path";       ///< set in memory by the catalogue

} // namespace MVR::CatalogueWord
