#ifndef Pegasus_CIMElementRep_h
#define Pegasus_CIMElementRep_h

// What the handles of the CIM object model share. Internal to pegcommon:
// providers and clients never include this header.

#include <atomic>
#include <memory>
#include <utility>
#include <vector>

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/CIMClass.h>
#include <Pegasus/Common/CIMInstance.h>
#include <Pegasus/Common/CIMMethod.h>
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

    Uint32 size() const { return _members ? Uint32(_members->items.size()) : 0; }

    /** Index of the member so named (any case), or PEG_NOT_FOUND. */
    Uint32 find(const CIMName& name) const {
        const String& wanted = name.getString();
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
            const String& candidate = _item(i)._rep->name.getString();
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
        Members& members = _ownSlots();
        Member& member = members.items[index];
        if (!member._rep) {
            // A member of the shared sequence, which other lists may hold.
            Member own = members.base->items[index].clone();
            own._rep->owners.add();
            member._rep = std::move(own._rep);
        } else if (member._rep->owners.count() > 1) {
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
    bool shareable() const {
        for (Uint32 i = 0; i < size(); i++) {
            if (!_onlyInLists(_item(i)))
                return false;
        }
        return true;
    }

private:
    // The sequence, shared by the lists copied from one another until one changes. Each
    // sequence counts once among the owners of the members it holds itself.
    struct Members {
        Members() = default;
        // The members of a base sequence, held for changing: each empty slot stands for the
        // base's member.
        explicit Members(std::shared_ptr<const Members> base_)
            : items(base_->items.size()), base(std::move(base_)) {}
        // A copy holds every member itself.
        Members(const Members& other) {
            items.reserve(other.items.size());
            for (size_t i = 0; i < other.items.size(); i++) {
                items.push_back(other.item(i));
                items.back()._rep->owners.add();
            }
        }
        Members& operator=(const Members&) = delete;
        ~Members() {
            for (const Member& member : items) {
                if (member._rep)
                    member._rep->owners.drop();
            }
        }
        const Member& item(size_t index) const {
            const Member& own = items[index];
            return own._rep ? own : base->items[index];
        }
        std::vector<Member> items;
        // A sequence that holds all its members itself, or null.
        std::shared_ptr<const Members> base;
    };

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
        return _members->items;
    }
    // The sequence of this list alone, for changing members in place: a shared sequence that
    // holds its members itself becomes the base of one that holds only those changed.
    Members& _ownSlots() {
        if (!_members)
            _members = std::make_shared<Members>();
        else if (_members.use_count() > 1 && !_members->base)
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
    What a property declares beyond its name and value. The properties an
    instance copies from its class share the class's declarations, so that
    giving the copy a value copies no more than the name and the value.
*/
class CIMPropertyDecl {
public:
    CIMPropertyDecl(Uint32 arraySize_, const CIMName& referenceClassName_,
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
    CIMPropertyRep& operator=(const CIMPropertyRep&) = delete;
    ~CIMPropertyRep() { CIMPropertyDecl::release(_decl); }

    const CIMPropertyDecl& decl() const { return *_decl; }
    /** The declaration of this property alone, for changing it. */
    CIMPropertyDecl& ownDecl();
    /** The qualifiers, for changing them or handing out a qualifier that may be changed. */
    CIMMemberList<CIMQualifier>& lendQualifiers();

    CIMName name;
    CIMValue value;
    CIMOwnerCount owners;

private:
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
