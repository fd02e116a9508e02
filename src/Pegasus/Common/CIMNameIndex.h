#ifndef Pegasus_CIMNameIndex_h
#define Pegasus_CIMNameIndex_h

// Internal to pegcommon: the member lists of the object model use it.

#include <atomic>
#include <cstdint>
#include <memory>
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
    CIMNameIndex(Uint32 count, NameAt nameAt)
        : _entries(tableSize(count)), _recent(new std::atomic<Uint64>[_entries.size()]()) {
        const Uint32 mask = Uint32(_entries.size() - 1);
        for (Uint32 position = 0; position < count; position++) {
            const Uint32 hash = hashNoCase(nameAt(position));
            Uint32 slot = hash & mask;
            while (_entries[slot].position != 0)
                slot = (slot + 1) & mask;
            _entries[slot] = Entry{hash, position + 1};
        }
    }

    /**
        The position of the name among those indexed by nameAt, or PEG_NOT_FOUND. Providers look
        the same names up over and over, mostly with the very same text: where a text was found
        is kept by the address of its code units, so that it is found again without hashing. The
        name at that position is compared all the same, since the address may hold another text
        by then.
    */
    template <class NameAt>
    Uint32 find(const String& name, NameAt nameAt) const {
        const Uint64 text = Uint64(reinterpret_cast<uintptr_t>(name.getChar16Data()));
        std::atomic<Uint64>& recent = _recent[(text >> 4) & (_entries.size() - 1)];
        const Uint64 seen = recent.load(std::memory_order_relaxed);
        if ((seen >> kPositionBits) == text &&
            String::equalNoCase(nameAt(Uint32(seen & kPositionMask)), name))
            return Uint32(seen & kPositionMask);
        const Uint32 position = _findHashed(name, nameAt);
        if (position < kPositionMask && (text >> (64 - kPositionBits)) == 0)
            recent.store(text << kPositionBits | position, std::memory_order_relaxed);
        return position;
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
    // A remembered lookup: the text's address above the position it was found at.
    static constexpr unsigned kPositionBits = 16;
    static constexpr Uint64 kPositionMask = (Uint64(1) << kPositionBits) - 1;

    template <class NameAt>
    Uint32 _findHashed(const String& name, NameAt nameAt) const {
        const Uint32 mask = Uint32(_entries.size() - 1);
        const Uint32 hash = hashNoCase(name);
        for (Uint32 slot = hash & mask; _entries[slot].position != 0; slot = (slot + 1) & mask) {
            const Entry& entry = _entries[slot];
            if (entry.hash == hash && String::equalNoCase(nameAt(entry.position - 1), name))
                return entry.position - 1;
        }
        return PEG_NOT_FOUND;
    }

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
    // Per slot, the last lookup whose text's address picks it; written by readers on any thread.
    std::unique_ptr<std::atomic<Uint64>[]> _recent;
};

PEGASUS_NAMESPACE_END

#endif
