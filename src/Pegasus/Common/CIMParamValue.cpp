#include "CIMParamValue.h"

#include "CIMElementRep.h"

PEGASUS_NAMESPACE_BEGIN

class CIMParamValueRep {
public:
    CIMParamValueRep(const String& name_, const CIMValue& value_, Boolean isTyped_)
        : name(checkedParameterName(name_)), value(value_), isTyped(isTyped_) {}

    static const String& checkedParameterName(const String& name) {
        if (name.size() == 0)
            throw UninitializedObjectException();
        return name;
    }

    String name;
    CIMValue value;
    Boolean isTyped;
};

CIMParamValue::CIMParamValue() = default;

CIMParamValue::CIMParamValue(const CIMParamValue& x) = default;

CIMParamValue& CIMParamValue::operator=(const CIMParamValue& x) = default;

CIMParamValue::CIMParamValue(String parameterName, CIMValue value, Boolean isTyped)
    : _rep(std::make_shared<CIMParamValueRep>(parameterName, value, isTyped)) {}

CIMParamValue::CIMParamValue(std::shared_ptr<CIMParamValueRep> rep) : _rep(std::move(rep)) {}

CIMParamValue::~CIMParamValue() = default;

String CIMParamValue::getParameterName() const {
    return checkedRep(_rep).name;
}

CIMValue CIMParamValue::getValue() const {
    return checkedRep(_rep).value;
}

Boolean CIMParamValue::isTyped() const {
    return checkedRep(_rep).isTyped;
}

void CIMParamValue::setParameterName(String& parameterName) {
    checkedRep(_rep).name = CIMParamValueRep::checkedParameterName(parameterName);
}

void CIMParamValue::setValue(CIMValue& value) {
    checkedRep(_rep).value = value;
}

void CIMParamValue::setIsTyped(Boolean isTyped) {
    checkedRep(_rep).isTyped = isTyped;
}

CIMParamValue CIMParamValue::clone() const {
    return CIMParamValue(std::make_shared<CIMParamValueRep>(checkedRep(_rep)));
}

Boolean CIMParamValue::isUninitialized() const {
    return !_rep;
}

PEGASUS_NAMESPACE_END
