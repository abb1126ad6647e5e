// What a class with a wire form declares besides its fields: writing, reading, its schema. Each macro declares
//
//   bool Write(Packager* pk) const;      Appends the fields in wire order. False if a field does not fit; what was
//                                        written by then stays.
//   bool Read(Packager* pk);             Reads the fields in the same order from the read pointer on. False at the
//                                        first field that cannot be read; what was read by then stays. A container is
//                                        cleared before it is filled.
//   static const wire::Schema& Wire();   The layout, for the project's own tools; wire::Schema is not public.
//
// with CCmdPackager, with CDataPackager, or with both. If a class differs from this, its comment says so, and
// `wirelens schema CLASS` prints the word for it. The pointer must not be null. Nothing here is locked.
//
// The source file defines all of it by one statement of the order.
#pragma once

class CCmdPackager;
class CDataPackager;
namespace wire
{
struct Schema;
}

#define WIRE_INTERFACE_CMD                                                                                             \
    bool Write(CCmdPackager* pk) const;                                                                                \
    bool Read(CCmdPackager* pk);                                                                                       \
    static const wire::Schema& Wire();
#define WIRE_INTERFACE_DATA                                                                                            \
    bool Write(CDataPackager* pk) const;                                                                               \
    bool Read(CDataPackager* pk);                                                                                      \
    static const wire::Schema& Wire();
#define WIRE_INTERFACE_BOTH                                                                                            \
    bool Write(CCmdPackager* pk) const;                                                                                \
    bool Write(CDataPackager* pk) const;                                                                               \
    bool Read(CCmdPackager* pk);                                                                                       \
    bool Read(CDataPackager* pk);                                                                                      \
    static const wire::Schema& Wire();

// The same as virtual operations, in this order; the order is part of the binary interface.
#define WIRE_INTERFACE_CMD_VIRTUAL                                                                                     \
    virtual bool Write(CCmdPackager* pk) const;                                                                        \
    virtual bool Read(CCmdPackager* pk);                                                                               \
    static const wire::Schema& Wire();
#define WIRE_INTERFACE_DATA_VIRTUAL                                                                                    \
    virtual bool Write(CDataPackager* pk) const;                                                                       \
    virtual bool Read(CDataPackager* pk);                                                                              \
    static const wire::Schema& Wire();
#define WIRE_INTERFACE_BOTH_VIRTUAL                                                                                    \
    virtual bool Write(CCmdPackager* pk) const;                                                                        \
    virtual bool Write(CDataPackager* pk) const;                                                                       \
    virtual bool Read(CCmdPackager* pk);                                                                               \
    virtual bool Read(CDataPackager* pk);                                                                              \
    static const wire::Schema& Wire();

// The same for a class that derives from one with virtual operations.
#define WIRE_INTERFACE_CMD_OVERRIDE                                                                                    \
    bool Write(CCmdPackager* pk) const override;                                                                       \
    bool Read(CCmdPackager* pk) override;                                                                              \
    static const wire::Schema& Wire();
#define WIRE_INTERFACE_BOTH_OVERRIDE                                                                                   \
    bool Write(CCmdPackager* pk) const override;                                                                       \
    bool Write(CDataPackager* pk) const override;                                                                      \
    bool Read(CCmdPackager* pk) override;                                                                              \
    bool Read(CDataPackager* pk) override;                                                                             \
    static const wire::Schema& Wire();
