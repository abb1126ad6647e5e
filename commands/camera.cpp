#include "commands/camera.h"

#include "packaging/wire/order.h"

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
    static const wire::Schema joint = wire::describe<Skeletons::Joint>(
        "Joint", [](wire::Describer& describer, const Skeletons::Joint& sample) { oneJoint(describer, sample); });

    wire::Field one;
    one.kind = wire::Kind::kRecord;
    one.record = &joint;
    wire::Field skeleton;
    skeleton.kind = wire::Kind::kArray;
    skeleton.extent = Skeletons::kJoints;
    skeleton.stride = sizeof(Skeletons::Joint);
    skeleton.parts = {one};
    wire::Field field;
    field.name = "m_Skeletons";
    field.kind = wire::Kind::kSizedItems;
    field.offset = v.offsetOf(found);
    field.sizeOffset = v.offsetOf(count);
    field.stride = sizeof(Skeletons);
    field.extent = CCmdSkeletons::kSkeletons;
    field.parts = {skeleton};
    v.schema().fields.push_back(field);
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
    const bool image = SIZED_BYTES(r.m_Size, r.m_Data, known);
    return std::is_const_v<R> && r.m_Size > 0 ? image : fixed;
}

// The images are processed whatever the result before them, and do not affect the result.
WIRE_COMMAND(CCmdSkeletons)
{
    const int known1 = r.m_Mask1Size;
    const int known2 = r.m_Mask2Size;
    bool good = HEAD(CCmdHead) && FIELDS(r.m_SkeletonCount, r.m_Time, r.m_Values, r.m_Shorts) &&
                skeletons(v, r.m_SkeletonCount, r.m_Skeletons) && FIELDS(r.m_Mask1Size);
    SIZED_BYTES(r.m_Mask1Size, r.m_Mask1, known1);
    good = good && FIELDS(r.m_Value1, r.m_Value2, r.m_Mask2Size);
    SIZED_BYTES(r.m_Mask2Size, r.m_Mask2, known2);
    return good;
}
