#include "core/TObject.h"

#include "diag/LogCategories.h"

namespace {

// A default that warns is reached only when a class lacks an override that
// its container needs. The numbers tell the places apart in the log.
void WarnMissingOverride(char const* operation, int place)
{
    qCWarning(LogNoGoZone) << operation << place;
}

} // namespace

TObject::~TObject() = default;

int TObject::Compare(TObject const&, long long) const
{
    WarnMissingOverride("Compare", 47);
    return -1;
}

bool TObject::IsEqual(TObject const& other, long long mode) const
{
    return Compare(other, mode) == 0;
}

TObject* TObject::CreateClone(void*) const
{
    WarnMissingOverride("CreateClone", 53);
    return nullptr;
}

TObject* TObject::CreateDefault(void*, TOutParam<EDefaultValues> values) const
{
    values = defaultValuesNone;
    WarnMissingOverride("CreateDefault", 55);
    return nullptr;
}

bool TObject::SetDefaultValues(EDefaultValues, void*)
{
    WarnMissingOverride("SetDefaultValues", 57);
    return false;
}

unsigned int TObject::GetHashedValue() const
{
    WarnMissingOverride("GetHashedValue", 60);
    return 0;
}

void TObject::DeleteSelf()
{
    delete this;
}

bool TObject::GetClassId(int*, char*) const
{
    return false;
}

bool TObject::CanWrite(long long) const
{
    return true;
}

void TObject::WriteState(TTaggedOutputStream&, long long, char const*, int) const
{
    WarnMissingOverride("WriteState", 88);
}

bool TObject::RestoreState(TTaggedInputStream&, long long, char const*, int)
{
    WarnMissingOverride("RestoreState", 89);
    return false;
}

void __AssignCloneVirtual(TObject const* source, TObject** target)
{
    if (*target) {
        (*target)->DeleteSelf();
        *target = nullptr;
    }
    if (source)
        *target = source->CreateClone(nullptr);
}

void* CB_PointerCloner(void const* element, void const*)
{
    return const_cast<void*>(element);
}
