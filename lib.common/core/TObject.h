#pragma once

#include "core/CommonExport.h"
#include "core/TOutParam.h"

class TTaggedOutputStream;
class TTaggedInputStream;

// What SetDefaultValues set. 0 means nothing; the members are the host's.
enum EDefaultValues : int
{
    defaultValuesNone = 0,
};

// Root of every object that lives in a container, compares, clones or
// persists. No data: only the table of operations that containers and
// streams call without knowing the class. Objects held through a TObject*
// die by DeleteSelf(); the destructor is protected.
class COMMON_EXPORT TObject
{
public:
    TObject() = default;
    TObject(TObject const&) {}
    TObject& operator=(TObject const&) { return *this; }

    // Negative: *this goes before other. Containers look only at the sign.
    virtual int Compare(TObject const& other, long long mode) const;
    virtual bool IsEqual(TObject const& other, long long mode) const;
    virtual TObject* CreateClone(void* context) const;
    virtual TObject* CreateDefault(void* context, TOutParam<EDefaultValues> values) const;
    virtual bool SetDefaultValues(EDefaultValues values, void* context);
    virtual unsigned int GetHashedValue() const;
    // Deletes through the virtual destructor. A call through a null pointer
    // is undefined in C++, so code holding a pointer that may be null calls
    // the free DeleteSelf(TObject*) below, which does nothing for null.
    virtual void DeleteSelf();
    // idString is a caller's buffer of 60 characters; a non-empty string wins
    // over the integer.
    virtual bool GetClassId(int* id, char* idString) const;
    virtual bool CanWrite(long long context) const;
    virtual void WriteState(TTaggedOutputStream& stream, long long context, char const* tag, int index) const;
    virtual bool RestoreState(TTaggedInputStream& stream, long long context, char const* tag, int index);

protected:
    virtual ~TObject();
};

inline void DeleteSelf(TObject* object)
{
    if (object)
        object->DeleteSelf();
}

// Makes a new element for a container that restores polymorphic elements:
// (context, "ID" or -1, "IDS" or ""). Null ends the restoring.
using TObjectFactory = TObject* (*)(long long context, int id, char const* idString);

// Assigns a member held by pointer to a polymorphic object: the old one is
// deleted, then the target holds a clone of source, or null.
COMMON_EXPORT void __AssignCloneVirtual(TObject const* source, TObject** target);

// The cloner that makes a copied list share the source's elements.
COMMON_EXPORT void* CB_PointerCloner(void const* element, void const* context);
