#pragma once

// What is made from the method tables for people and for their editors.

#include <ostream>

namespace orvane::manual {

/// The page docs/reference.md, in Markdown.
void WriteReferencePage(std::ostream &page, const char *version);

/// The stub _Orvane.pyi: the signatures as an editor or a type checker reads them, in the syntax
/// that all of those understand. Parameters begin with two underscores, which says that they are
/// given by position only.
void WriteStub(std::ostream &stub, const char *version);

} // namespace orvane::manual
