#include <Pegasus/Common/MessageLoader.h>

PEGASUS_NAMESPACE_BEGIN

MessageLoaderParms::MessageLoaderParms()
    : msg_id(0), useProcessLocale(false), useThreadLocale(true) {}

MessageLoaderParms::MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0_,
                                       const Formatter::Arg& arg1_, const Formatter::Arg& arg2_,
                                       const Formatter::Arg& arg3_, const Formatter::Arg& arg4_,
                                       const Formatter::Arg& arg5_, const Formatter::Arg& arg6_,
                                       const Formatter::Arg& arg7_, const Formatter::Arg& arg8_,
                                       const Formatter::Arg& arg9_)
    : msg_id(id), default_msg(msg), useProcessLocale(false), useThreadLocale(true), arg0(arg0_),
      arg1(arg1_), arg2(arg2_), arg3(arg3_), arg4(arg4_), arg5(arg5_), arg6(arg6_), arg7(arg7_),
      arg8(arg8_), arg9(arg9_) {}

MessageLoaderParms::MessageLoaderParms(const char* id, const char* msg)
    : msg_id(id), default_msg(msg), useProcessLocale(false), useThreadLocale(true) {}

MessageLoaderParms::MessageLoaderParms(const char* id, const String& msg)
    : msg_id(id), default_msg(msg), useProcessLocale(false), useThreadLocale(true) {}

MessageLoaderParms::MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0_)
    : MessageLoaderParms(id, msg, arg0_, Formatter::DEFAULT_ARG, Formatter::DEFAULT_ARG,
                         Formatter::DEFAULT_ARG, Formatter::DEFAULT_ARG) {}

MessageLoaderParms::MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0_,
                                       const Formatter::Arg& arg1_)
    : MessageLoaderParms(id, msg, arg0_, arg1_, Formatter::DEFAULT_ARG, Formatter::DEFAULT_ARG,
                         Formatter::DEFAULT_ARG) {}

MessageLoaderParms::MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0_,
                                       const Formatter::Arg& arg1_, const Formatter::Arg& arg2_)
    : MessageLoaderParms(id, msg, arg0_, arg1_, arg2_, Formatter::DEFAULT_ARG,
                         Formatter::DEFAULT_ARG) {}

MessageLoaderParms::MessageLoaderParms(const char* id, const char* msg, const Formatter::Arg& arg0_,
                                       const Formatter::Arg& arg1_, const Formatter::Arg& arg2_,
                                       const Formatter::Arg& arg3_)
    : MessageLoaderParms(id, msg, arg0_, arg1_, arg2_, arg3_, Formatter::DEFAULT_ARG) {}

MessageLoaderParms::~MessageLoaderParms() = default;

String MessageLoader::getMessage(MessageLoaderParms& parms) {
    return Formatter::format(parms.default_msg, parms.arg0, parms.arg1, parms.arg2, parms.arg3,
                             parms.arg4, parms.arg5, parms.arg6, parms.arg7, parms.arg8,
                             parms.arg9);
}

PEGASUS_NAMESPACE_END
