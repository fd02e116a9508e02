// Texts the disk providers form of a disk's numbers for every instance they build: formed by
// hand, since printf's parsing of its format cost more than the rest of a disk's identity.
#ifndef KSV_DiskText_h
#define KSV_DiskText_h

#include <Pegasus/Common/Config.h>

#include <charconv>

PEGASUS_NAMESPACE_BEGIN

// A WWN as 16 upper-case hexadecimal digits, printf's "%016llX"; returns the end.
inline char* putWwn(char* out, Uint64 wwn) {
    static const char digits[] = "0123456789ABCDEF";
    for (int i = 15; i >= 0; i--, wwn >>= 4)
        out[i] = digits[wwn & 0xF];
    return out + 16;
}

// A number in decimal, printf's "%d" or "%u"; `end` bounds the room. Returns the end.
template <typename Integer>
char* putDecimal(char* out, char* end, Integer value) {
    return std::to_chars(out, end, value).ptr;
}

PEGASUS_NAMESPACE_END

#endif
