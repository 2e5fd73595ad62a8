/// @file
/// SharedObjectBase, DynamicObject, InterfaceBase: the bases of shared objects.
///
/// An object that derives from SharedObjectBase stores its control block, so a raw pointer to it, such as `this`, can
/// be converted to one more SharedPtr with the same control block once the object is shared. It has no virtual table.
/// DynamicObject adds a virtual destructor: use it for objects that are shared through pointers to their bases.
/// InterfaceBase is the root of interfaces that shared objects implement. SharedPtr also counts objects of any other
/// type.
///
/// Cost: one pointer in each object; with DynamicObject one more.
///
/// Threads: the first SharedPtr to an object must be created by one thread.
#pragma once

#include "Vorn/Config.h"

namespace Vorn {

class PtrTypeBase;
class RefCounter;
class TreeNodeHelper;

/// The part of a shared object that stores its control block. Copying and assigning an object leave it unchanged.
/// @warning The first SharedPtr owns the object: do not create one in the constructor of the object.
class VORN_API SharedObjectBase {
protected:
    SharedObjectBase() : m_refCounter(nullptr) {}

    /// Starts without a control block, whatever `other` has: each object has its own.
    SharedObjectBase(const SharedObjectBase&) : m_refCounter(nullptr) {}

    ~SharedObjectBase() {}

    RefCounter* m_refCounter; ///< the control block of the object; null before its first shared pointer

private:
    friend class PtrTypeBase;
    friend class TreeNodeHelper;

    /// Changes nothing: each object keeps its own control block.
    SharedObjectBase& operator=(const SharedObjectBase&) { return *this; }
};

/// A shared object with a virtual destructor.
class VORN_API DynamicObject : public SharedObjectBase {
public:
    DynamicObject() = default;
    DynamicObject(const DynamicObject& other) : SharedObjectBase(other) {}
    virtual ~DynamicObject();
};

/// Root of the interfaces that shared objects implement. A SharedPtr to an interface counts in the control block of the
/// object that implements it.
class VORN_API InterfaceBase {
public:
    InterfaceBase() {}
    InterfaceBase(const InterfaceBase&) {}
    InterfaceBase& operator=(const InterfaceBase&) { return *this; }

    /// Returns the shared object that implements this interface.
    virtual SharedObjectBase* getSharedObject() = 0;

protected:
    virtual ~InterfaceBase() {}
};

} // namespace Vorn
