#ifndef KSV_MOF_MOFLEXER_H
#define KSV_MOF_MOFLEXER_H

#include <cstdint>
#include <string>
#include <vector>

namespace ksv::mof {

enum class TokenKind {
    Identifier, // also every keyword: MOF keywords are matched by the parser
    Alias,      // $name; text holds the name without '$'
    Integer,    // decimal, hexadecimal, octal or binary, with optional sign
    Real,
    String, // text holds the decoded value, UTF-8
    Char,   // charValue holds the decoded UCS-2 code
    Pragma, // #pragma
    Punct,  // one of { } ( ) [ ] ; , : =
    End
};

struct Token {
    TokenKind kind = TokenKind::End;
    std::string text; // identifier, alias, decoded string, number as written or punctuation
    bool negative = false;
    std::uint64_t magnitude = 0; // Integer: the absolute value
    double real = 0;
    std::uint16_t charValue = 0;
    unsigned line = 0;
    unsigned column = 0;

    bool isPunct(char c) const {
        return kind == TokenKind::Punct && text.size() == 1 && text[0] == c;
    }
    // Case-insensitive keyword test on identifiers.
    bool isKeyword(const char* keyword) const;
};

// Splits one MOF file into tokens. Comments are skipped; a malformed
// literal or comment throws MofError naming the file, line and column.
std::vector<Token> tokenize(const std::string& text, const std::string& fileName);

} // namespace ksv::mof

#endif
