#include <Pegasus/Common/Formatter.h>

#include <cstdio>

PEGASUS_NAMESPACE_BEGIN

namespace {

template <class T>
String printed(const char* format, T value) {
    char buffer[64];
    std::snprintf(buffer, sizeof(buffer), format, value);
    return String(buffer);
}

} // namespace

// Built before the other static objects of the library, whose messages may
// need it.
const Formatter::Arg Formatter::DEFAULT_ARG __attribute__((init_priority(101)));

String Formatter::Arg::toString() const {
    switch (_type) {
    case STRING:
        return _string;
    case BOOLEAN:
        return String(_boolean ? "true" : "false");
    case INTEGER:
        return printed("%d", _integer);
    case UINTEGER:
        return printed("%u", _uinteger);
    case LINTEGER:
        return printed("%lld", _lInteger);
    case ULINTEGER:
        return printed("%llu", _lUInteger);
    case REAL:
        return printed("%f", _real);
    case VOIDT:
    case CSTRLIT:
        break;
    }
    return String();
}

void Formatter::Arg::appendToString(String& out) const {
    out.append(toString());
}

String Formatter::format(const String& formatString, const Arg& arg0, const Arg& arg1,
                         const Arg& arg2, const Arg& arg3, const Arg& arg4, const Arg& arg5,
                         const Arg& arg6, const Arg& arg7, const Arg& arg8, const Arg& arg9) {
    const Arg* args[] = {&arg0, &arg1, &arg2, &arg3, &arg4, &arg5, &arg6, &arg7, &arg8, &arg9};
    String result;
    const Uint32 n = formatString.size();
    for (Uint32 i = 0; i < n; i++) {
        const Uint16 c = formatString[i];
        const bool hasNext = i + 1 < n;
        if (c == '$' && hasNext) {
            // "$" followed by anything but a digit stands for nothing.
            const Uint16 digit = formatString[++i];
            if (digit >= '0' && digit <= '9')
                args[digit - '0']->appendToString(result);
        } else if (c == '\\' && hasNext) {
            result.append(formatString[++i]);
        } else if (c != '$' && c != '\\') {
            result.append(Char16(c));
        }
    }
    return result;
}

PEGASUS_NAMESPACE_END
