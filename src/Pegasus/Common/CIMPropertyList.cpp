#include "CIMPropertyList.h"

#include <vector>

#include "CIMNameIndex.h"
#include "Exception.h"

PEGASUS_NAMESPACE_BEGIN

class CIMPropertyListRep {
public:
    bool isNull = true;
    Array<CIMName> names;
    std::vector<Uint32> tags;
};

namespace {

void checkNoNullName(const Array<CIMName>& names) {
    for (Uint32 i = 0; i < names.size(); i++) {
        if (names[i].isNull())
            throw UninitializedObjectException();
    }
}

bool containsName(const Array<CIMName>& names, const CIMName& name) {
    for (Uint32 i = 0; i < names.size(); i++) {
        if (names[i].equal(name))
            return true;
    }
    return false;
}

} // namespace

CIMPropertyList::CIMPropertyList() : _rep(std::make_unique<CIMPropertyListRep>()) {}

CIMPropertyList::CIMPropertyList(const CIMPropertyList& x)
    : _rep(std::make_unique<CIMPropertyListRep>(*x._rep)) {}

CIMPropertyList::CIMPropertyList(const Array<CIMName>& propertyNames)
    : _rep(std::make_unique<CIMPropertyListRep>()) {
    set(propertyNames);
}

CIMPropertyList::~CIMPropertyList() = default;

void CIMPropertyList::set(const Array<CIMName>& propertyNames) {
    checkNoNullName(propertyNames);
    _rep->names = propertyNames;
    _rep->tags.clear();
    _rep->isNull = false;
}

CIMPropertyList& CIMPropertyList::operator=(const CIMPropertyList& x) {
    if (this != &x)
        *_rep = *x._rep;
    return *this;
}

void CIMPropertyList::clear() {
    *_rep = CIMPropertyListRep();
}

Boolean CIMPropertyList::isNull() const {
    return _rep->isNull;
}

Uint32 CIMPropertyList::size() const {
    return _rep->names.size();
}

const CIMName& CIMPropertyList::operator[](Uint32 index) const {
    return _rep->names[index];
}

Array<CIMName> CIMPropertyList::getPropertyNameArray() const {
    return _rep->names;
}

Uint32 CIMPropertyList::getCIMNameTag(Uint32 index) const {
    if (index >= _rep->tags.size())
        throw IndexOutOfBoundsException();
    return _rep->tags[index];
}

void CIMPropertyList::append(Array<String>& propertyListArray) {
    Array<CIMName> distinct;
    for (Uint32 i = 0; i < propertyListArray.size(); i++) {
        CIMName name(propertyListArray[i]);
        if (!containsName(distinct, name))
            distinct.append(name);
    }
    if (distinct.size() != 0) {
        for (Uint32 i = 0; i < distinct.size(); i++)
            _rep->tags.push_back(CIMNameIndex::hashNoCase(distinct[i].getString()));
        _rep->names = distinct;
    }
    _rep->isNull = false;
}

void CIMPropertyList::appendCIMNameTag(Uint32 nameTag) {
    _rep->tags.push_back(nameTag);
}

Boolean CIMPropertyList::contains(const CIMName& name) const {
    return containsName(_rep->names, name);
}

Boolean CIMPropertyList::useThisProperty(const CIMName& name) const {
    return _rep->isNull || contains(name);
}

String CIMPropertyList::toString() const {
    if (_rep->isNull)
        return String("NULL");
    if (_rep->names.size() == 0)
        return String("EMPTY");
    String text(_rep->names[0].getString());
    for (Uint32 i = 1; i < _rep->names.size(); i++) {
        text.append(String(", "));
        text.append(_rep->names[i].getString());
    }
    return text;
}

PEGASUS_NAMESPACE_END
