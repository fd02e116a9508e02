#ifndef Pegasus_Formatter_h
#define Pegasus_Formatter_h

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/Linkage.h>

PEGASUS_NAMESPACE_BEGIN

// Fills "$0".."$9" in a message with arguments. "\$" stands for a plain '$'.
class PEGASUS_COMMON_LINKAGE Formatter {
public:
    class PEGASUS_COMMON_LINKAGE Arg {
    public:
        enum Type { VOIDT, STRING, CSTRLIT, BOOLEAN, INTEGER, UINTEGER, LINTEGER, ULINTEGER, REAL };

        Arg() : _type(VOIDT) {}
        Arg(const String& x) : _string(x), _type(STRING) {}
        Arg(const char* x) : _string(x), _type(STRING) {}
        Arg(Boolean x) : _boolean(x), _type(BOOLEAN) {}
        Arg(Sint32 x) : _integer(x), _type(INTEGER) {}
        Arg(Uint32 x) : _uinteger(x), _type(UINTEGER) {}
        Arg(Sint64 x) : _lInteger(x), _type(LINTEGER) {}
        Arg(Uint64 x) : _lUInteger(x), _type(ULINTEGER) {}
        Arg(Real64 x) : _real(x), _type(REAL) {}

        String toString() const;
        void appendToString(String& out) const;

    private:
        String _string;
        // Zeroed where a text or nothing is held, so that copying an argument reads no
        // indeterminate bytes.
        union {
            Sint32 _integer;
            Uint32 _uinteger;
            Real64 _real;
            int _boolean;
            Sint64 _lInteger;
            Uint64 _lUInteger = 0;
        };
        Type _type;
    };

    static String
    format(const String& formatString, const Arg& arg0 = Formatter::DEFAULT_ARG,
           const Arg& arg1 = Formatter::DEFAULT_ARG, const Arg& arg2 = Formatter::DEFAULT_ARG,
           const Arg& arg3 = Formatter::DEFAULT_ARG, const Arg& arg4 = Formatter::DEFAULT_ARG,
           const Arg& arg5 = Formatter::DEFAULT_ARG, const Arg& arg6 = Formatter::DEFAULT_ARG,
           const Arg& arg7 = Formatter::DEFAULT_ARG, const Arg& arg8 = Formatter::DEFAULT_ARG,
           const Arg& arg9 = Formatter::DEFAULT_ARG);

    static const Formatter::Arg DEFAULT_ARG;
};

PEGASUS_NAMESPACE_END

#endif /* Pegasus_Formatter_h */
