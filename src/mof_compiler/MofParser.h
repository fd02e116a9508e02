#ifndef KSV_MOF_MOFPARSER_H
#define KSV_MOF_MOFPARSER_H

#include <string>
#include <vector>

#include "mof_compiler/MofAst.h"

namespace ksv::mof {

// Parses the text of one MOF file into its productions, in file order.
// Pragmas are returned as productions; the compiler acts on them. A syntax
// error throws MofError with the file, line and what was expected.
std::vector<ast::Production> parseMof(const std::string& text, const std::string& fileName);

} // namespace ksv::mof

#endif
