#include "commands/camera.h"

#include "packaging/wire/order.h"

#include <algorithm>
#include <cstring>

namespace
{

using Found = Skeletons[CCmdSkeletons::kSkeletons];

// The third float of a joint is not sent.
template <class V, class J>
bool oneJoint(V& v, J& joint)
{
    return v.Fields("m_X, m_Y, m_State", joint.m_X, joint.m_Y, joint.m_State);
}

template <class V, class S>
bool joints(V& v, S& skeleton)
{
    for (auto& joint : skeleton.m_Joints)
        if (!oneJoint(v, joint))
            return false;
    return true;
}

bool skeletons(wire::Writer<CCmdPackager>& v, int count, const Found& found)
{
    for (int i = 0; i < count && i < CCmdSkeletons::kSkeletons; ++i)
        if (!joints(v, found[i]))
            return false;
    return true;
}

// The payload bounds the loop: each skeleton consumes some of it, or fails.
bool skeletons(wire::Reader<CCmdPackager>& v, int count, Found& found)
{
    Skeletons dropped;
    for (int i = 0; i < count; ++i)
        if (!joints(v, i < CCmdSkeletons::kSkeletons ? found[i] : dropped))
            return false;
    return true;
}

bool skeletons(wire::Describer& v, const int& count, const Found& found)
{
    static constinit wire::LazySchema joint;
    wire::Field one;
    one.kind = wire::Kind::kRecord;
    one.record = &joint.get("Joint",
                            [](wire::Describer& describer)
                            {
                                const Skeletons::Joint sample;
                                oneJoint(describer.of(&sample), sample);
                            });
    one.smallest = one.record->smallest;
    wire::Field skeleton;
    skeleton.kind = wire::Kind::kArray;
    skeleton.extent = Skeletons::kJoints;
    skeleton.stride = sizeof(Skeletons::Joint);
    skeleton.parts = {one};
    wire::Field field;
    field.name = "m_Skeletons";
    field.kind = wire::Kind::kArray;
    field.offset = v.offsetOf(&found);
    field.stride = sizeof(Skeletons);
    field.extent = CCmdSkeletons::kSkeletons;
    field.parts = {skeleton};
    v.addSized(field, count);
    return true;
}

using Image = unsigned char[kMaskImageSize];

// At most the bytes of the array.
bool image(wire::Writer<CCmdPackager>& v, const char*, int size, const Image& bytes, int)
{
    return wire::writeBytes(v.packager(), bytes, std::clamp(size, 0, kMaskImageSize));
}

// Bytes beyond the array are consumed and dropped. A missing byte keeps its value below known and becomes 0 above it,
// since the array is uninitialized there. Never fails the read.
bool image(wire::Reader<CCmdPackager>& v, const char*, int size, Image& bytes, int known)
{
    const int present = std::clamp(size, 0, wire::Access::left(v.packager()));
    const int kept = std::min(present, kMaskImageSize);
    if (kept > 0)
        std::memcpy(bytes, wire::Access::next(v.packager(), kept), static_cast<size_t>(kept));
    wire::Access::took(v.packager(), present);
    const int unset = std::max(kept, std::min(known, kMaskImageSize));
    if (unset < std::min(size, kMaskImageSize))
        std::memset(bytes + unset, 0, static_cast<size_t>(std::min(size, kMaskImageSize) - unset));
    return true;
}

bool image(wire::Describer& v, const char* name, const int& size, const Image& bytes, int)
{
    wire::Field field = v.fieldOf(name, &bytes, &wire::shapeOf<Image>);
    field.how = wire::Untested;
    v.addSized(field, size);
    return true;
}

} // namespace

WIRE_COMMAND(CCmdRemoteCamera)
{
    return HEAD(CCmdHead) && FIELDS(r.m_Flag1);
}

// The image is processed whatever the result before it. Read returns the result of the fixed fields only; Write that of
// the last byte, if any.
WIRE_COMMAND(CCmdMaskImage)
{
    const int known = r.m_Size;
    const bool fixed = HEAD(CCmdHead) && FIELDS(r.m_Width, r.m_Height, r.m_Size, r.m_Time);
    const bool data = BY_HAND(TriedAnyway, image(v, "m_Data", r.m_Size, r.m_Data, known));
    return std::is_const_v<R> && r.m_Size > 0 ? data : fixed;
}

// The images are processed whatever the result before them, and do not affect the result.
WIRE_COMMAND(CCmdSkeletons)
{
    const int known1 = r.m_Mask1Size;
    const int known2 = r.m_Mask2Size;
    bool good = HEAD(CCmdHead) && FIELDS(r.m_SkeletonCount, r.m_Time, r.m_Values, r.m_Shorts) &&
                skeletons(v, r.m_SkeletonCount, r.m_Skeletons) && FIELDS(r.m_Mask1Size);
    BY_HAND(TriedAnyway, image(v, "m_Mask1", r.m_Mask1Size, r.m_Mask1, known1));
    good = good && FIELDS(r.m_Value1, r.m_Value2, r.m_Mask2Size);
    BY_HAND(TriedAnyway, image(v, "m_Mask2", r.m_Mask2Size, r.m_Mask2, known2));
    return good;
}
