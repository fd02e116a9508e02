// Where an operation's results go as they arise: straight into a response being written, or
// into an array for in-process callers.
#ifndef KSV_CIMSERVER_SINK_H
#define KSV_CIMSERVER_SINK_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>

#include "cimserver/ResultShaping.h"

#include <type_traits>

namespace ksv::server {

template <typename T>
class Sink {
public:
    virtual ~Sink() = default;
    virtual void put(const T& item) = 0;
    // An object as the request's filter admits it. A sink that writes objects out applies the
    // filter while writing, sparing a copy of each; others are given the filtered copy. Names
    // have nothing to filter.
    virtual void put(const T& item, const ObjectFilter& filter) {
        if constexpr (std::is_same_v<T, Pegasus::CIMInstance> ||
                      std::is_same_v<T, Pegasus::CIMObject>)
            put(filtered(item, filter));
        else
            put(item);
    }
};

template <typename T>
class CollectingSink : public Sink<T> {
public:
    using Sink<T>::put;
    void put(const T& item) override { _items.append(item); }
    const Pegasus::Array<T>& items() const { return _items; }

private:
    Pegasus::Array<T> _items;
};

} // namespace ksv::server

#endif
