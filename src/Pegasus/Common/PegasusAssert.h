#ifndef Pegasus_Assert_h
#define Pegasus_Assert_h

#include <cassert>
#include <Pegasus/Common/Config.h>

#define PEGASUS_ASSERT(COND) assert(COND)
#define PEGASUS_DEBUG_ASSERT(COND) assert(COND)
#define PEGASUS_FCT_EXECUTE_AND_ASSERT(VALUE, FCT)                                                 \
    do {                                                                                           \
        if (!((VALUE) == (FCT)))                                                                   \
            assert(false);                                                                         \
    } while (0)

#endif /* Pegasus_Assert_h */
