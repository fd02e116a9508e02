#ifndef Pegasus_CIMNameIndex_h
#define Pegasus_CIMNameIndex_h

// Internal to pegcommon: the member lists of the object model use it.

#include <vector>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/String.h>

PEGASUS_NAMESPACE_BEGIN

/**
    The positions of a list's members by name, without regard to (ASCII) case: a lookup hashes the
    name once and mostly compares it with one member, where a scan of a long list compares it with
    many. Names must not change while the index is in use, except in case.
*/
class CIMNameIndex {
public:
    /** nameAt(i): the name of member i of count, all unique without regard to case. */
    template <class NameAt>
    CIMNameIndex(Uint32 count, NameAt nameAt) : _entries(tableSize(count)) {
        const Uint32 mask = Uint32(_entries.size() - 1);
        for (Uint32 position = 0; position < count; position++) {
            const Uint32 hash = hashNoCase(nameAt(position));
            Uint32 slot = hash & mask;
            while (_entries[slot].position != 0)
                slot = (slot + 1) & mask;
            _entries[slot] = Entry{hash, position + 1};
        }
    }

    /** The position of the name among those indexed by nameAt, or PEG_NOT_FOUND. */
    template <class NameAt>
    Uint32 find(const String& name, NameAt nameAt) const {
        const Uint32 mask = Uint32(_entries.size() - 1);
        const Uint32 hash = hashNoCase(name);
        for (Uint32 slot = hash & mask; _entries[slot].position != 0; slot = (slot + 1) & mask) {
            const Entry& entry = _entries[slot];
            if (entry.hash == hash && String::equalNoCase(nameAt(entry.position - 1), name))
                return entry.position - 1;
        }
        return PEG_NOT_FOUND;
    }

    /** A hash equal for names equal without regard to (ASCII) case. */
    static Uint32 hashNoCase(const String& name) {
        const Char16* units = name.getChar16Data();
        Uint32 hash = 2166136261u;
        for (Uint32 i = 0, n = name.size(); i < n; i++) {
            Uint16 unit = Uint16(units[i]);
            if (unit >= 'A' && unit <= 'Z')
                unit = Uint16(unit + ('a' - 'A'));
            hash = (hash ^ unit) * 16777619u;
        }
        return hash;
    }

private:
    struct Entry {
        Uint32 hash;
        // 1 + the member's position; 0 marks an empty slot.
        Uint32 position;
    };

    // At most half full, so that probes stay short and always reach an empty slot.
    static size_t tableSize(Uint32 count) {
        size_t size = 8;
        while (size < size_t(count) * 2)
            size *= 2;
        return size;
    }

    std::vector<Entry> _entries;
};

PEGASUS_NAMESPACE_END

#endif
