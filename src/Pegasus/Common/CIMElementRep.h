#ifndef Pegasus_CIMElementRep_h
#define Pegasus_CIMElementRep_h

// What the handles of the CIM object model share. Internal to pegcommon:
// providers and clients never include this header.

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <limits>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>
#include <vector>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
#include <Pegasus/Common/CIMNameIndex.h>
#include <Pegasus/Common/CIMObject.h>
#include <Pegasus/Common/CIMParameter.h>
#include <Pegasus/Common/CIMProperty.h>
#include <Pegasus/Common/CIMQualifier.h>
#include <Pegasus/Common/CIMValue.h>
#include <Pegasus/Common/Exception.h>

PEGASUS_NAMESPACE_BEGIN

/** The representation behind a handle; throws if the handle has none. */
template <class Rep>
Rep& checkedRep(const std::shared_ptr<Rep>& rep) {
    if (!rep)
        throw UninitializedObjectException();
    return *rep;
}

/** The same, for reading: member lists hand out shared members only to readers. */
template <class Rep>
const Rep& constRep(const std::shared_ptr<Rep>& rep) {
    return checkedRep(rep);
}

/**
    How many member lists hold an element. An element that belongs to a list
    keeps its name, since lists find their members by name. A copied element
    belongs to no list.
*/
class CIMOwnerCount {
public:
    CIMOwnerCount() = default;
    CIMOwnerCount(const CIMOwnerCount&) {}
    CIMOwnerCount& operator=(const CIMOwnerCount&) = delete;

    void add() { _count.fetch_add(1); }
    /** The first owner of an element no other thread can reach yet. */
    void claim() { _count.store(1, std::memory_order_relaxed); }
    void drop() { _count.fetch_sub(1); }
    bool any() const { return _count.load() != 0; }
    Uint32 count() const { return _count.load(); }

private:
    std::atomic<Uint32> _count{0};
};

/**
    Refuses renaming an element that belongs to a list; kind names the
    element in the message.
*/
inline void checkRenameAllowed(const CIMOwnerCount& owners, const CIMName& oldName,
                               const CIMName& newName, const char* kind) {
    if (owners.any() && !oldName.equal(newName)) {
        throw Exception(String("Attempted to change the name of a ") + String(kind) +
                        String(" already in a container."));
    }
}

/** A name for an element; null names are refused. */
inline const CIMName& checkedName(const CIMName& name) {
    if (name.isNull())
        throw UninitializedObjectException();
    return name;
}

/**
    Memory for the members that one list clones from a shared sequence, as an
    instance clones the properties of its class that it sets: a block or two
    instead of an allocation per member. Each member of the sequence is cloned
    into the arena at most once, which bounds it; nothing is given back before
    the list and every member taken from the arena have ended. Only the list
    that alone holds its sequence takes from it. The arena keeps that sequence
    alive, so that its members' clones may refer to what they share with it
    without counting references.
*/
class CIMMemberArena {
public:
    // Members hold pointers and counts, nothing aligned wider.
    static constexpr size_t alignment = alignof(void*);

    /**
        bound: how many members may be taken at most; fewest and most: how many lists like this
        one took before at the least and at the most, so that the first block holds what each
        such list takes and a second one what the others take beyond it.
    */
    CIMMemberArena(size_t bound, size_t fewest, size_t most, std::shared_ptr<const void> source)
        : _source(std::move(source)), _left(bound), _fewest(fewest), _most(std::max(fewest, most)) {
    }
    CIMMemberArena(const CIMMemberArena&) = delete;
    CIMMemberArena& operator=(const CIMMemberArena&) = delete;

    /** Ends the use of a member taken. */
    void release() {
        if (_tearingDown == this)
            _releasedByTaker++;
        else
            _drop(1);
    }
    /**
        Ends the use of the list that took the members: destroy() ends those that it alone holds,
        on this thread, and the room it paid for and left is freed. Their uses end with one atomic
        step rather than one each; members held elsewhere too end theirs later, as usual.
    */
    template <class Destroy>
    void releaseTaker(Destroy destroy) {
        CIMMemberArena* const outer = _tearingDown;
        _tearingDown = this;
        destroy();
        _tearingDown = outer;
        _drop(1 + _prepaid + _releasedByTaker);
    }

    /** Room for one member, which counts as a user until released. */
    void* take(size_t bytes) {
        bytes = (bytes + alignment - 1) / alignment * alignment;
        if (_room < bytes)
            _newBlock(bytes);
        // Each block counts its members as users at once, rather than one atomic step each.
        if (_prepaid != 0)
            _prepaid--;
        else
            _users.fetch_add(1, std::memory_order_relaxed);
        void* taken = _next;
        _next += bytes;
        _room -= bytes;
        _left -= _left != 0;
        _taken++;
        return taken;
    }

    /**
        How many members the next block holds: what is left of the fewest that lists like this
        one are known to take, then of the most; past that, small steps where those are known and
        half what was taken where not, so that little room is left unused either way.
    */
    size_t nextBlockMembers() const {
        if (_taken < _fewest)
            return std::min(_left, _fewest - _taken);
        if (_taken < _most)
            return std::max<size_t>(1, std::min(_left, _most - _taken));
        const size_t wanted = _most != 0 ? 4 : std::max<size_t>(4, _taken / 2);
        return std::max<size_t>(1, std::min(_left, wanted));
    }

private:
    ~CIMMemberArena() {
        while (_blocks) {
            Block* previous = _blocks->previous;
            ::operator delete(_blocks);
            _blocks = previous;
        }
    }

    struct Block {
        Block* previous;
    };
    static constexpr size_t header = (sizeof(Block) + alignment - 1) / alignment * alignment;

    // Allocators serve large sizes in classes: a power of two and each quarter past it. A large
    // block ends at the class below the size wanted, and the members beyond go to a next, small
    // block, so that no large block leaves the rest of its class unused.
    static size_t snugBytes(size_t wanted) {
        if (wanted <= 1024)
            return wanted;
        size_t power = 1024;
        while (power * 2 <= wanted)
            power *= 2;
        const size_t step = power / 4;
        return power + (wanted - power) / step * step;
    }

    void _newBlock(size_t bytes) {
        const size_t wanted = header + nextBlockMembers() * bytes;
        const size_t members = std::max<size_t>(1, (snugBytes(wanted) - header) / bytes);
        void* memory = ::operator new(header + members * bytes);
        _blocks = new (memory) Block{_blocks};
        _next = static_cast<unsigned char*>(memory) + header;
        _room = members * bytes;
        _users.fetch_add(members, std::memory_order_relaxed);
        _prepaid += members;
    }

    void _drop(size_t uses) {
        if (_users.fetch_sub(uses, std::memory_order_acq_rel) == uses)
            delete this;
    }

    // The arena whose taker ends its members on this thread now, if any.
    static inline thread_local CIMMemberArena* _tearingDown = nullptr;

    const std::shared_ptr<const void> _source;
    Block* _blocks = nullptr;
    unsigned char* _next = nullptr;
    size_t _room = 0;
    size_t _left;
    const size_t _fewest;
    const size_t _most;
    size_t _taken = 0;
    // Users counted for members not yet taken; only the taker reads or writes it.
    size_t _prepaid = 0;
    // Members whose use ended while the taker ended its own; only the taker's thread counts them.
    size_t _releasedByTaker = 0;
    std::atomic<size_t> _users{1};
};

/**
    Marks the clone of a member that a list keeps in its arena: what it shares with the original
    lives as long as the arena, so the clone need not count a reference to it.
*/
struct CIMBorrowing {};

/** Allocates from an arena that each allocation keeps alive. */
template <class T>
class CIMArenaAllocator {
public:
    using value_type = T;

    explicit CIMArenaAllocator(CIMMemberArena* arena) : _arena(arena) {}
    template <class U>
    CIMArenaAllocator(const CIMArenaAllocator<U>& other) : _arena(other._arena) {}

    T* allocate(size_t count) {
        static_assert(alignof(T) <= CIMMemberArena::alignment, "arena pieces are not so aligned");
        return static_cast<T*>(_arena->take(count * sizeof(T)));
    }
    void deallocate(T*, size_t) { _arena->release(); }

    template <class U>
    bool operator==(const CIMArenaAllocator<U>& other) const {
        return _arena == other._arena;
    }
    template <class U>
    bool operator!=(const CIMArenaAllocator<U>& other) const {
        return _arena != other._arena;
    }

private:
    CIMMemberArena* _arena;

    template <class U>
    friend class CIMArenaAllocator;
};

/**
    The named members of an element, in order: qualifiers, properties,
    methods or parameters. Names are unique without regard to case.

    Copying a list gives it members of its own, as clones would be; until
    either list changes a member, though, both hold the same one, and until
    either list changes at all, both hold the same sequence. A member held
    by more than one list is read only: the non-const at() first replaces it
    with a clone of its own. Members that some handle outside the lists
    still refers to are cloned at once, since that handle may change them.

    A list that changes members of a shared sequence, as an instance sets
    the values of properties shared with its class, keeps only the changed
    ones and refers to the shared sequence for the others, so that neither
    a copy nor its end touches the members it leaves alone.
*/
template <class Member>
class CIMMemberList {
public:
    /** kind names the members in messages: "property", "qualifier", ... */
    explicit CIMMemberList(const char* kind) : _kind(kind) {}
    CIMMemberList(const CIMMemberList& other) : _kind(other._kind) { appendAllOf(other); }
    CIMMemberList& operator=(const CIMMemberList&) = delete;

    /** Appends what a clone of the member would be, sharing it while nobody changes it. */
    void appendCopyOf(const Member& member) {
        if (_onlyInLists(member))
            _append(member);
        else
            _append(member.clone());
    }

    /**
        Appends what clones of all the other list's members would be. An empty
        list shares the other's sequence when no outside handle can change it,
        which spares copying every member handle of, say, a class's properties.
    */
    void appendAllOf(const CIMMemberList& other) {
        if (size() == 0 && other.shareable()) {
            _members = other._members;
            return;
        }
        _reserve(size() + other.size());
        for (Uint32 i = 0; i < other.size(); i++)
            appendCopyOf(other._item(i));
    }

    Uint32 size() const { return _members ? Uint32(_members->size()) : 0; }

    /** Index of the member so named (any case), or PEG_NOT_FOUND. */
    Uint32 find(const CIMName& name) const {
        const String& wanted = name.getString();
        if (size() >= Members::indexedSize)
            return _members->indexed().find(wanted);
        const Uint32 length = wanted.size();
        const size_t count = size();
        // Members are mostly looked up in the order they are listed, so the search starts after
        // the one found last; names are unique, so where it starts does not change the answer.
        const size_t start = _next.load(std::memory_order_relaxed);
        size_t i = start;
        for (size_t looked = 0; looked < count; looked++, i++) {
            if (i >= count)
                i = 0;
            // Most names differ in length: that is checked here before a call compares them.
            const String& candidate = memberName(*_item(i)._rep).getString();
            if (candidate.size() == length && String::equalNoCase(candidate, wanted)) {
                // Readers of one list on several threads write only when the start moves.
                if (i + 1 != start)
                    _next.store(Uint32(i + 1), std::memory_order_relaxed);
                return Uint32(i);
            }
        }
        return PEG_NOT_FOUND;
    }

    Member& at(Uint32 index) {
        _checkIndex(index);
        Member& member = _ownSlots().own(index);
        if (member._rep->owners.count() > 1) {
            Member own = member.clone();
            own._rep->owners.add();
            member._rep->owners.drop();
            member._rep = std::move(own._rep);
        }
        return member;
    }
    const Member& at(Uint32 index) const {
        _checkIndex(index);
        return _item(index);
    }
    /** The representation of a member this list alone holds, for changing it in place. */
    auto& repAt(Uint32 index) { return *at(index)._rep; }

    /**
        Each member in order, as at() gives them to readers, to visit(member, unchanged):
        unchanged tells whether this list leaves the member as it is in the sequence the list was
        made over, as an instance leaves the properties of its class it does not set. Such a
        member is the same for all the lists made over that sequence, and no list changes it
        while sharedKeeper() is held.
    */
    template <class Visit>
    void visitAll(Visit visit) const {
        if (!_members)
            return;
        const Members& members = *_members;
        if (!members.base) {
            for (const Member& member : members.items)
                visit(member, false);
            return;
        }
        for (size_t i = 0, count = members.size(); i < count; i++) {
            const Uint16 position = members.slots[i];
            if (position != 0)
                visit(members.changed[position - 1], false);
            else
                visit(members.base->item(i), true);
        }
    }
    /** Whether the list was made over a sequence it shares, which sharedKeeper() keeps. */
    bool overSharedSequence() const { return _members && _members->base; }
    std::shared_ptr<const void> sharedKeeper() const { return _members ? _members->base : nullptr; }

    /**
        @exception UninitializedObjectException for an uninitialized member.
        @exception AlreadyExistsException if the name is taken.
    */
    void add(const Member& member) {
        checkedRep(member._rep);
        if (find(member.getName()) != PEG_NOT_FOUND) {
            throw AlreadyExistsException(String(_kind) + String(" \"") +
                                         member.getName().getString() + String("\""));
        }
        _append(member);
    }

    void remove(Uint32 index) {
        _checkIndex(index);
        std::vector<Member>& items = _own();
        items[index]._rep->owners.drop();
        items.erase(items.begin() + index);
    }

    void clear() { _members.reset(); }

    /** Same size and pairwise identical() members, in order. */
    bool identical(const CIMMemberList& other) const {
        if (_members == other._members)
            return true;
        if (size() != other.size())
            return false;
        for (Uint32 i = 0; i < size(); i++) {
            if (!_item(i).identical(other._item(i)))
                return false;
        }
        return true;
    }

    /** True when no handle outside the lists refers to a member. */
    bool shareable() const { return !_members || _members->shareable(); }

private:
    // The sequence, shared by the lists copied from one another until one changes. Each
    // sequence counts once among the owners of the members it holds itself.
    struct Members {
        Members() = default;
        // The members of a base sequence, held for changing: a slot without a position stands
        // for the base's member, so that the members left alone take two bytes each.
        explicit Members(std::shared_ptr<const Members> base_)
            : base(std::move(base_)), slots(new Uint16[base->size()]()) {}
        // A copy holds every member itself.
        Members(const Members& other) {
            items.reserve(other.size());
            for (size_t i = 0; i < other.size(); i++) {
                items.push_back(other.item(i));
                items.back()._rep->owners.add();
            }
        }
        Members& operator=(const Members&) = delete;
        ~Members() {
            for (const Member& member : items)
                disown(member);
            for (const Member& member : changed)
                disown(member);
            if (arena) {
                base->tellCloned(changed.size());
                arena->releaseTaker([this] { changed.clear(); });
            }
            delete index.load(std::memory_order_relaxed);
        }
        size_t size() const { return base ? base->size() : items.size(); }
        // Asked of a class's members each time an instance is made of it: the members are
        // walked where they lie rather than looked up one by one.
        bool shareable() const {
            if (!base)
                return std::all_of(items.begin(), items.end(), _onlyInLists);
            for (size_t i = 0, count = size(); i < count; i++) {
                if (!_onlyInLists(item(i)))
                    return false;
            }
            return true;
        }

        // Lists this long find members by an index of their names rather than by a scan.
        static constexpr size_t indexedSize = 12;
        // The sequence at the root of the bases, which holds its members itself at the
        // positions of this one's.
        const Members& indexed() const { return base ? base->indexed() : *this; }
        Uint32 find(const String& name) const {
            const CIMNameIndex* built = index.load(std::memory_order_acquire);
            if (!built)
                built = buildIndex();
            return built->find(name, [this](Uint32 i) -> const String& { return nameAt(i); });
        }
        const String& nameAt(Uint32 index) const {
            return memberName(*items[index]._rep).getString();
        }
        // Before the members are added, removed or replaced.
        void dropIndex() { delete index.exchange(nullptr, std::memory_order_relaxed); }
        const CIMNameIndex* buildIndex() const {
            const CIMNameIndex* built = new CIMNameIndex(
                Uint32(items.size()), [this](Uint32 i) -> const String& { return nameAt(i); });
            // Readers on several threads may build it at once: the first one stays.
            const CIMNameIndex* first = nullptr;
            if (index.compare_exchange_strong(first, built, std::memory_order_acq_rel))
                return built;
            delete built;
            return first;
        }
        const Member& item(size_t index) const {
            if (!base)
                return items[index];
            const Uint16 position = slots[index];
            return position != 0 ? changed[position - 1] : base->item(index);
        }
        // The member this sequence holds itself in the place, cloning the base's first.
        Member& own(size_t index) {
            if (!base)
                return items[index];
            if (slots[index] == 0) {
                auto clone = cloneOfBase(index);
                clone->owners.claim();
                if (changed.size() == changed.capacity()) {
                    base->tellCloning(changed.size() + 1);
                    makeRoom(changed.size() + arena->nextBlockMembers());
                }
                // The handles move their pointers: copies would count each reference up and down.
                changed.emplace_back();
                changed.back()._rep = std::move(clone);
                slots[index] = Uint16(changed.size());
            }
            return changed[slots[index] - 1];
        }
        // Room for that many changed members; the handles move over without counting references.
        void makeRoom(size_t capacity) {
            std::vector<Member> larger;
            larger.reserve(capacity);
            for (Member& member : changed) {
                larger.emplace_back();
                larger.back()._rep = std::move(member._rep);
            }
            changed.swap(larger);
        }
        // What the base's member's clone() would be, kept in this sequence's arena, which keeps
        // the base and so what the clone borrows from the base's member.
        auto cloneOfBase(size_t index) {
            const auto& member = base->item(index)._rep;
            using Rep = typename std::decay_t<decltype(member)>::element_type;
            if (!arena) {
                const size_t fewest = base->clonedByOverlays.load(std::memory_order_relaxed);
                const size_t most = base->mostClonedByOverlays.load(std::memory_order_relaxed);
                arena = new CIMMemberArena(size(), fewest, most, base);
                // Handles are small: room for the most at once spares moving them as they grow.
                changed.reserve(std::min(size(), std::max(most, arena->nextBlockMembers())));
            }
            const CIMArenaAllocator<Rep> room(arena);
            if constexpr (std::is_constructible_v<Rep, const Rep&, CIMBorrowing>)
                return std::allocate_shared<Rep>(room, checkedRep(member), CIMBorrowing{});
            else
                return std::allocate_shared<Rep>(room, checkedRep(member));
        }
        // Lists over one base mostly change much the same members: the fewest and the most any
        // changed size the room of the next, which then grows by small steps, so that little
        // room is unused and a list takes at most two blocks as long as it changes no more.
        // Lists are mostly all built before any ends, so the most is told as a list grows too.
        void tellCloned(size_t count) const {
            Uint32 fewest = clonedByOverlays.load(std::memory_order_relaxed);
            while ((fewest == 0 || count < fewest) &&
                   !clonedByOverlays.compare_exchange_weak(fewest, Uint32(count),
                                                           std::memory_order_relaxed)) {
            }
            tellCloning(count);
        }
        void tellCloning(size_t count) const {
            Uint32 most = mostClonedByOverlays.load(std::memory_order_relaxed);
            while (count > most && !mostClonedByOverlays.compare_exchange_weak(
                                       most, Uint32(count), std::memory_order_relaxed)) {
            }
        }

        // The members of a sequence that holds them all itself.
        std::vector<Member> items;
        // The sequence standing in for the empty slots, or null. Its own base, if any, holds all
        // its members itself, which bounds a lookup at two steps.
        std::shared_ptr<const Members> base;
        // Over a base: per member of the base, 1 + its position among those changed, or 0.
        std::unique_ptr<Uint16[]> slots;
        std::vector<Member> changed;
        // Where the members cloned from the base are kept, once one is.
        CIMMemberArena* arena = nullptr;
        // The fewest members a list over this sequence cloned from it, 0 before any ended.
        mutable std::atomic<Uint32> clonedByOverlays{0};
        // The most members a list over this sequence cloned from it.
        mutable std::atomic<Uint32> mostClonedByOverlays{0};
        // Built on the first lookup of a long sequence that holds its members itself.
        mutable std::atomic<const CIMNameIndex*> index{nullptr};
    };

    // A member this list alone refers to ends with it: nobody reads its owners any more.
    static void disown(const Member& member) {
        if (member._rep.use_count() != 1)
            member._rep->owners.drop();
    }
    static bool _onlyInLists(const Member& member) {
        return member._rep.use_count() == long(member._rep->owners.count());
    }
    const Member& _item(Uint32 index) const { return _members->item(index); }
    // The sequence of this list alone, holding all its members itself, for adding or removing.
    std::vector<Member>& _own() {
        if (!_members)
            _members = std::make_shared<Members>();
        else if (_members.use_count() > 1 || _members->base)
            _members = std::make_shared<Members>(*_members);
        _members->dropIndex();
        return _members->items;
    }
    // The sequence of this list alone, for changing members in place: a shared sequence becomes
    // the base of one that holds only those changed, as an instance's properties refer to those
    // of its class, which may refer to those of the class it was made from.
    Members& _ownSlots() {
        if (!_members)
            _members = std::make_shared<Members>();
        else if (_members.use_count() > 1 && (!_members->base || !_members->base->base) &&
                 _members->size() <= std::numeric_limits<Uint16>::max())
            _members = std::make_shared<Members>(std::shared_ptr<const Members>(_members));
        else if (_members.use_count() > 1)
            _members = std::make_shared<Members>(*_members);
        return *_members;
    }
    void _reserve(Uint32 capacity) {
        if (capacity > size())
            _own().reserve(capacity);
    }
    void _append(const Member& member) {
        std::vector<Member>& items = _own();
        member._rep->owners.add();
        items.push_back(member);
    }
    void _checkIndex(Uint32 index) const {
        if (index >= size())
            throw IndexOutOfBoundsException();
    }

    const char* _kind;
    std::shared_ptr<Members> _members;
    // Where the next search starts; readers on several threads may move it.
    mutable std::atomic<Uint32> _next{0};
};

class CIMQualifierRep {
public:
    CIMQualifierRep(const CIMName& name_, const CIMValue& value_, const CIMFlavor& flavor_,
                    Boolean propagated_);

    CIMName name;
    CIMValue value;
    CIMFlavor flavor;
    Boolean propagated;
    CIMOwnerCount owners;
};

/**
    What a property declares beside its value. The properties an instance
    copies from its class share the class's declarations, so that giving the
    copy a value copies no more than the value.
*/
class CIMPropertyDecl {
public:
    CIMPropertyDecl(const CIMName& name_, Uint32 arraySize_, const CIMName& referenceClassName_,
                    const CIMName& classOrigin_, Boolean propagated_);
    CIMPropertyDecl(const CIMPropertyDecl& other);
    CIMPropertyDecl& operator=(const CIMPropertyDecl&) = delete;

    /** Whether a qualifier may have been handed out for changing, or added with a handle kept. */
    void lendQualifiers() { _lent.store(true, std::memory_order_relaxed); }
    /**
        True when no handle outside the lists can change a qualifier, so that another
        property may share this declaration.
    */
    bool shareable() const;

    /** Another property's reference to this declaration. */
    CIMPropertyDecl* share() {
        _refs.fetch_add(1, std::memory_order_relaxed);
        return this;
    }
    /** Ends a reference; the last one frees the declaration. */
    static void release(CIMPropertyDecl* decl) {
        if (decl->_refs.fetch_sub(1, std::memory_order_acq_rel) == 1)
            delete decl;
    }
    bool sharedByOthers() const { return _refs.load(std::memory_order_acquire) > 1; }

    CIMName name;
    Uint32 arraySize;
    CIMName referenceClassName;
    CIMName classOrigin;
    Boolean propagated;
    CIMMemberList<CIMQualifier> qualifiers{"qualifier"};

private:
    // Set while some handle outside the qualifier list may refer to a qualifier.
    mutable std::atomic<bool> _lent{false};
    // The properties referring to this declaration: a count of its own keeps the reference
    // in each property at the size of a pointer.
    std::atomic<Uint32> _refs{1};
};

class CIMPropertyRep {
public:
    CIMPropertyRep(const CIMName& name_, const CIMValue& value_, Uint32 arraySize_,
                   const CIMName& referenceClassName_, const CIMName& classOrigin_,
                   Boolean propagated_);
    /** A clone: the declaration is shared until either property changes it. */
    CIMPropertyRep(const CIMPropertyRep& other);
    /** A clone that borrows the declaration, which outlives it, until it changes it. */
    CIMPropertyRep(const CIMPropertyRep& other, CIMBorrowing);
    CIMPropertyRep& operator=(const CIMPropertyRep&) = delete;
    ~CIMPropertyRep() {
        if (!_borrowed)
            CIMPropertyDecl::release(_decl);
    }

    const CIMPropertyDecl& decl() const { return *_decl; }
    /**
        The declaration when it is borrowed from the property this one was cloned from, which
        nothing changes while the sequence holding that property is kept; otherwise null.
    */
    const CIMPropertyDecl* borrowedDecl() const { return _borrowed ? _decl : nullptr; }
    /** The declaration of this property alone, for changing it. */
    CIMPropertyDecl& ownDecl();
    /** The qualifiers, for changing them or handing out a qualifier that may be changed. */
    CIMMemberList<CIMQualifier>& lendQualifiers();

    CIMValue value;
    CIMOwnerCount owners;

private:
    // The declaration is another property's, not counted: it is copied before any change.
    // Placed beside the owners, it takes no room of its own.
    bool _borrowed = false;
    CIMPropertyDecl* _decl;
};

class CIMParameterRep {
public:
    CIMParameterRep(const CIMName& name_, CIMType type_, Boolean isArray_, Uint32 arraySize_,
                    const CIMName& referenceClassName_);

    CIMName name;
    CIMType type;
    Boolean isArray;
    Uint32 arraySize;
    CIMName referenceClassName;
    CIMMemberList<CIMQualifier> qualifiers{"qualifier"};
    CIMOwnerCount owners;
};

class CIMMethodRep {
public:
    CIMMethodRep(const CIMName& name_, CIMType type_, const CIMName& classOrigin_,
                 Boolean propagated_);

    CIMName name;
    CIMType type;
    CIMName classOrigin;
    Boolean propagated;
    CIMMemberList<CIMQualifier> qualifiers{"qualifier"};
    CIMMemberList<CIMParameter> parameters{"parameter"};
    CIMOwnerCount owners;
};

/** The name lists find a member by. */
template <class Rep>
const CIMName& memberName(const Rep& rep) {
    return rep.name;
}
inline const CIMName& memberName(const CIMPropertyRep& rep) {
    return rep.decl().name;
}

/** A class or an instance; classes alone use the superclass and methods. */
class CIMObjectRep {
public:
    enum class Kind { Class, Instance };

    /** @exception UninitializedObjectException if className is null. */
    CIMObjectRep(Kind kind_, const CIMName& className, const CIMName& superClassName_);

    bool isClass() const { return kind == Kind::Class; }

    /**
        @exception UninitializedObjectException if the path has no class name.
        @exception TypeMismatchException if the path names another class.
    */
    void setPath(const CIMObjectPath& newPath);
    /** Classes refuse reference properties without a reference class. */
    void addProperty(const CIMProperty& property);
    bool identical(const CIMObjectRep& other) const;
    void instanceFilter(Boolean includeQualifiers, Boolean includeClassOrigin,
                        const CIMPropertyList& propertyList);
    /** True when the boolean qualifier so named is present and true. */
    bool isTrueQualifier(const CIMName& name) const;
    /** The CIM-XML CLASS or INSTANCE element. */
    String toXml() const;

    Kind kind;
    CIMObjectPath path;
    CIMName superClassName;
    CIMMemberList<CIMQualifier> qualifiers{"qualifier"};
    CIMMemberList<CIMProperty> properties{"property"};
    CIMMemberList<CIMMethod> methods{"method"};
};

/** True when the property carries the qualifier Key set to true. */
bool isKeyProperty(const CIMConstProperty& property);

PEGASUS_NAMESPACE_END

#endif
