// SharedObjectBase, DynamicObject, InterfaceBase: what shared objects derive from.
//
// An object that derives from SharedObjectBase remembers its record, so a raw pointer to it, such as `this`, can be
// turned into one more SharedPtr of the same record, once there is one: the first SharedPtr owns the object, so none is
// to be made in a constructor. It costs one pointer and no virtual table. DynamicObject adds a virtual destructor: take
// it when objects are shared through pointers to their bases. InterfaceBase is the root of interfaces that shared
// objects implement. SharedPtr counts objects of any other type as well.
//
// Threads: the first SharedPtr to an object is made by one thread.
#pragma once

#include "Vorn/Config.h"

namespace Vorn {

class PtrTypeBase;
class RefCounter;
class TreeNodeHelper;

/// The part of a shared object that remembers its record. Copying an object copies nothing of it.
class VORN_API SharedObjectBase {
protected:
    SharedObjectBase() : m_refCounter(nullptr) {}

    /// Starts with no record, whatever `other` has: a copy has a life of its own.
    SharedObjectBase(const SharedObjectBase&) : m_refCounter(nullptr) {}

    ~SharedObjectBase() {}

    RefCounter* m_refCounter; // the object's record; null before its first shared pointer

private:
    friend class PtrTypeBase;
    friend class TreeNodeHelper;

    /// Changes nothing: each object keeps its own record.
    SharedObjectBase& operator=(const SharedObjectBase&) { return *this; }
};

/// A shared object with a virtual destructor.
class VORN_API DynamicObject : public SharedObjectBase {
public:
    DynamicObject() = default;
    DynamicObject(const DynamicObject& other) : SharedObjectBase(other) {}
    virtual ~DynamicObject();
};

/// Root of the interfaces that shared objects implement. A SharedPtr to an interface counts in the record of the object
/// behind it.
class VORN_API InterfaceBase {
public:
    InterfaceBase() {}
    InterfaceBase(const InterfaceBase&) {}
    InterfaceBase& operator=(const InterfaceBase&) { return *this; }

    /// The shared object that implements this interface.
    virtual SharedObjectBase* getSharedObject() = 0;

protected:
    virtual ~InterfaceBase() {}
};

} // namespace Vorn
