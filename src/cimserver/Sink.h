// Where an operation's results go as they arise: straight into a response being written, or
// into an array for in-process callers.
#ifndef KSV_CIMSERVER_SINK_H
#define KSV_CIMSERVER_SINK_H

#include <Pegasus/Common/Config.h>
#include <Pegasus/Common/Array.h>

namespace ksv::server {

template <typename T>
class Sink {
public:
    virtual ~Sink() = default;
    virtual void put(const T& item) = 0;
};

template <typename T>
class CollectingSink : public Sink<T> {
public:
    void put(const T& item) override { _items.append(item); }
    const Pegasus::Array<T>& items() const { return _items; }

private:
    Pegasus::Array<T> _items;
};

} // namespace ksv::server

#endif
