#include "mof_compiler/MofLexer.h"

#include <cctype>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <strings.h>

#include "mof_compiler/MofError.h"

namespace ksv::mof {

bool Token::isKeyword(const char* keyword) const {
    return kind == TokenKind::Identifier && strcasecmp(text.c_str(), keyword) == 0;
}

namespace {

bool isIdentifierStart(char c) {
    return std::isalpha(static_cast<unsigned char>(c)) || c == '_' ||
           static_cast<unsigned char>(c) >= 0x80;
}

bool isIdentifierChar(char c) {
    return isIdentifierStart(c) || std::isdigit(static_cast<unsigned char>(c));
}

bool isDigit(char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0;
}

int hexDigitValue(char c) {
    if (isDigit(c))
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    if (c >= 'A' && c <= 'F')
        return c - 'A' + 10;
    return -1;
}

void appendUtf8(std::string& out, std::uint32_t code) {
    if (code < 0x80) {
        out += static_cast<char>(code);
    } else if (code < 0x800) {
        out += static_cast<char>(0xC0 | (code >> 6));
        out += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        out += static_cast<char>(0xE0 | (code >> 12));
        out += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
        out += static_cast<char>(0x80 | (code & 0x3F));
    }
}

class Lexer {
public:
    Lexer(const std::string& text, const std::string& fileName) : _text(text), _file(fileName) {}

    std::vector<Token> run() {
        std::vector<Token> tokens;
        for (;;) {
            skipBlanksAndComments();
            Token token = next();
            tokens.push_back(token);
            if (token.kind == TokenKind::End)
                return tokens;
        }
    }

private:
    const std::string& _text;
    const std::string& _file;
    std::size_t _pos = 0;
    unsigned _line = 1;
    unsigned _column = 1;

    char peek(std::size_t ahead = 0) const {
        return _pos + ahead < _text.size() ? _text[_pos + ahead] : '\0';
    }
    bool atEnd() const { return _pos >= _text.size(); }

    char advance() {
        char c = _text[_pos++];
        if (c == '\n') {
            ++_line;
            _column = 1;
        } else {
            ++_column;
        }
        return c;
    }

    [[noreturn]] void fail(unsigned line, unsigned column, const std::string& message) const {
        throw MofError(SourceLocation{_file, line, column}, message);
    }

    void skipBlanksAndComments() {
        while (!atEnd()) {
            if (std::isspace(static_cast<unsigned char>(peek()))) {
                advance();
            } else if (peek() == '/' && peek(1) == '/') {
                while (!atEnd() && peek() != '\n')
                    advance();
            } else if (peek() == '/' && peek(1) == '*') {
                skipBlockComment();
            } else {
                return;
            }
        }
    }

    void skipBlockComment() {
        unsigned line = _line, column = _column;
        advance();
        advance();
        while (!(peek() == '*' && peek(1) == '/')) {
            if (atEnd())
                fail(line, column, "unterminated comment");
            advance();
        }
        advance();
        advance();
    }

    Token startToken(TokenKind kind) const {
        Token token;
        token.kind = kind;
        token.line = _line;
        token.column = _column;
        return token;
    }

    Token next() {
        if (atEnd())
            return startToken(TokenKind::End);
        char c = peek();
        if (isIdentifierStart(c))
            return identifier();
        if (isDigit(c) || ((c == '-' || c == '+') && (isDigit(peek(1)) || peek(1) == '.')) ||
            (c == '.' && isDigit(peek(1))))
            return number();
        if (c == '"')
            return string();
        if (c == '\'')
            return character();
        if (c == '$')
            return alias();
        if (c == '#')
            return pragma();
        if (std::strchr("{}()[];,:=", c) != nullptr) {
            Token token = startToken(TokenKind::Punct);
            token.text = std::string(1, advance());
            return token;
        }
        fail(_line, _column, std::string("unexpected character '") + c + "'");
    }

    Token identifier() {
        Token token = startToken(TokenKind::Identifier);
        while (!atEnd() && isIdentifierChar(peek()))
            token.text += advance();
        return token;
    }

    Token alias() {
        Token token = startToken(TokenKind::Alias);
        advance();
        if (!isIdentifierStart(peek()))
            fail(token.line, token.column, "expected an alias name after '$'");
        while (!atEnd() && isIdentifierChar(peek()))
            token.text += advance();
        return token;
    }

    Token pragma() {
        Token token = startToken(TokenKind::Pragma);
        advance();
        std::string word;
        while (!atEnd() && isIdentifierChar(peek()))
            word += advance();
        if (strcasecmp(word.c_str(), "pragma") != 0)
            fail(token.line, token.column, "expected '#pragma'");
        token.text = "#pragma";
        return token;
    }

    Token number() {
        Token token = startToken(TokenKind::Integer);
        while (!atEnd() &&
               (isIdentifierChar(peek()) || peek() == '.' || peek() == '+' || peek() == '-')) {
            char c = peek();
            bool signInsideExponent = (c == '+' || c == '-') && !token.text.empty() &&
                                      (token.text.back() == 'e' || token.text.back() == 'E');
            if ((c == '+' || c == '-') && !token.text.empty() && !signInsideExponent)
                break;
            token.text += advance();
        }
        classifyNumber(token);
        return token;
    }

    void classifyNumber(Token& token) const {
        std::string body = token.text;
        token.negative = !body.empty() && body[0] == '-';
        if (!body.empty() && (body[0] == '-' || body[0] == '+'))
            body.erase(0, 1);
        bool looksReal =
            body.find('.') != std::string::npos || (body.find_first_of("eE") != std::string::npos &&
                                                    body.find_first_of("xX") == std::string::npos);
        if (looksReal)
            parseReal(token);
        else
            parseInteger(token, body);
    }

    void parseReal(Token& token) const {
        token.kind = TokenKind::Real;
        const char* begin = token.text.c_str();
        char* end = nullptr;
        errno = 0;
        token.real = std::strtod(begin, &end);
        if (end != begin + token.text.size() || errno == ERANGE)
            fail(token.line, token.column, "malformed real number '" + token.text + "'");
    }

    void parseInteger(Token& token, const std::string& body) const {
        unsigned base = 10;
        std::string digits = body;
        if (digits.size() > 2 && digits[0] == '0' && (digits[1] == 'x' || digits[1] == 'X')) {
            base = 16;
            digits.erase(0, 2);
        } else if (digits.size() > 1 && (digits.back() == 'b' || digits.back() == 'B')) {
            base = 2;
            digits.pop_back();
        } else if (digits.size() > 1 && digits[0] == '0') {
            base = 8;
            digits.erase(0, 1);
        }
        token.magnitude = accumulate(token, digits, base);
    }

    std::uint64_t accumulate(const Token& token, const std::string& digits, unsigned base) const {
        std::uint64_t value = 0;
        for (char c : digits) {
            int digit = hexDigitValue(c);
            if (digit < 0 || static_cast<unsigned>(digit) >= base)
                fail(token.line, token.column, "malformed integer '" + token.text + "'");
            if (value > (UINT64_MAX - static_cast<unsigned>(digit)) / base)
                fail(token.line, token.column, "integer '" + token.text + "' is out of range");
            value = value * base + static_cast<unsigned>(digit);
        }
        return value;
    }

    Token string() {
        Token token = startToken(TokenKind::String);
        advance();
        while (peek() != '"') {
            if (atEnd() || peek() == '\n')
                fail(token.line, token.column, "unterminated string");
            if (peek() == '\\')
                appendUtf8(token.text, escape());
            else
                token.text += advance();
        }
        advance();
        return token;
    }

    Token character() {
        Token token = startToken(TokenKind::Char);
        advance();
        if (peek() == '\\') {
            token.charValue = static_cast<std::uint16_t>(escape());
        } else if (!atEnd() && peek() != '\'' && peek() != '\n') {
            token.charValue = utf8Character(token);
        } else {
            fail(token.line, token.column, "empty or unterminated character literal");
        }
        if (peek() != '\'')
            fail(token.line, token.column, "character literal holds more than one character");
        advance();
        return token;
    }

    // One UTF-8 encoded character of the Basic Multilingual Plane.
    std::uint16_t utf8Character(const Token& token) {
        unsigned char lead = static_cast<unsigned char>(advance());
        if (lead < 0x80)
            return lead;
        int continuation = lead >= 0xE0 ? 2 : 1;
        if (lead >= 0xF0)
            fail(token.line, token.column, "character literal outside the 16-bit range");
        std::uint32_t code = lead & (continuation == 2 ? 0x0F : 0x1F);
        for (int i = 0; i < continuation; ++i) {
            if ((static_cast<unsigned char>(peek()) & 0xC0) != 0x80)
                fail(token.line, token.column, "malformed UTF-8 in character literal");
            code = (code << 6) | (static_cast<unsigned char>(advance()) & 0x3F);
        }
        return static_cast<std::uint16_t>(code);
    }

    std::uint32_t escape() {
        unsigned line = _line, column = _column;
        advance();
        char c = atEnd() ? '\0' : advance();
        switch (c) {
        case 'b':
            return '\b';
        case 't':
            return '\t';
        case 'n':
            return '\n';
        case 'f':
            return '\f';
        case 'r':
            return '\r';
        case '"':
        case '\'':
        case '\\':
            return static_cast<unsigned char>(c);
        case 'x':
        case 'X':
            return hexEscape(line, column);
        default:
            fail(line, column, std::string("unknown escape sequence '\\") + c + "'");
        }
    }

    std::uint32_t hexEscape(unsigned line, unsigned column) {
        std::uint32_t code = 0;
        int count = 0;
        while (count < 4 && hexDigitValue(peek()) >= 0) {
            code = code * 16 + static_cast<std::uint32_t>(hexDigitValue(advance()));
            ++count;
        }
        if (count == 0)
            fail(line, column, "expected hexadecimal digits after '\\x'");
        return code;
    }
};

} // namespace

std::vector<Token> tokenize(const std::string& text, const std::string& fileName) {
    return Lexer(text, fileName).run();
}

} // namespace ksv::mof
