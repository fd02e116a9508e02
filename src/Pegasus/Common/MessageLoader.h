#ifndef Pegasus_MessageLoader_h
#define Pegasus_MessageLoader_h

#include <cstdlib>
#include <cctype>
#include <Pegasus/Common/Linkage.h>
#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>
#include <Pegasus/Common/Formatter.h>

PEGASUS_NAMESPACE_BEGIN

// A message to be produced: its catalogue id, the default (English) text with
// "$n" placeholders and up to ten arguments. No message catalogues are
// installed, so the default text is always the one used.
class PEGASUS_COMMON_LINKAGE MessageLoaderParms {
public:
    const char* msg_id;
    String default_msg;
    String msg_src_path;
    Boolean useProcessLocale;
    Boolean useThreadLocale;
    Formatter::Arg arg0;
    Formatter::Arg arg1;
    Formatter::Arg arg2;
    Formatter::Arg arg3;
    Formatter::Arg arg4;
    Formatter::Arg arg5;
    Formatter::Arg arg6;
    Formatter::Arg arg7;
    Formatter::Arg arg8;
    Formatter::Arg arg9;

    MessageLoaderParms();
    MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0,
                       const Formatter::Arg& arg1, const Formatter::Arg& arg2,
                       const Formatter::Arg& arg3, const Formatter::Arg& arg4,
                       const Formatter::Arg& arg5 = Formatter::DEFAULT_ARG,
                       const Formatter::Arg& arg6 = Formatter::DEFAULT_ARG,
                       const Formatter::Arg& arg7 = Formatter::DEFAULT_ARG,
                       const Formatter::Arg& arg8 = Formatter::DEFAULT_ARG,
                       const Formatter::Arg& arg9 = Formatter::DEFAULT_ARG);
    MessageLoaderParms(const char* id, const char* msg);
    MessageLoaderParms(const char* id, const String& msg);
    MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0);
    MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0,
                       const Formatter::Arg& arg1);
    MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0,
                       const Formatter::Arg& arg1, const Formatter::Arg& arg2);
    MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0,
                       const Formatter::Arg& arg1, const Formatter::Arg& arg2,
                       const Formatter::Arg& arg3);
    ~MessageLoaderParms();
};

class PEGASUS_COMMON_LINKAGE MessageLoader {
public:
    // The default text of parms with its arguments filled in.
    static String getMessage(MessageLoaderParms& parms);
};

PEGASUS_NAMESPACE_END

#endif /* Pegasus_MessageLoader_h */
