// The value operations of both packagers, declared once. Each returns true on success.
//
// A write without space changes nothing; a composite (count and units, length and text, size and bytes) keeps
// what it had written. A scalar read with too few bytes left changes neither the target nor the read pointer; a
// composite leaves the read pointer after what it had consumed. Pointers must not be null. Raw bytes that are written
// may be bytes that the packager itself holds.
//
// Read15 and Read30 by pointer decode the variable forms; by reference they read a fixed two and four bytes. Both
// are on the wire today, so both stay.
#pragma once

#define COMMONGROUND_VALUE_OPERATIONS                                                                                  \
    bool Write(bool value);                                                                                            \
    bool Write(char value);                                                                                            \
    bool Write(unsigned char value);                                                                                   \
    bool Write(short value);                                                                                           \
    bool Write(unsigned short value);                                                                                  \
    bool Write(int value);                                                                                             \
    bool Write(unsigned long value);                                                                                   \
    bool Write(float value);                                                                                           \
    bool Write15(unsigned short value);                                                                                \
    bool Write30(unsigned long value);                                                                                 \
    bool Write(const zet::String_T<wchar_t>& value);                                                                   \
    bool Write(const zet::Uuid& value);                                                                                \
    bool Write(const zet::Buffer& value);                                                                              \
    bool Write(const void* data, int size);                                                                            \
    bool Read(bool* value);                                                                                            \
    bool Read(char* value);                                                                                            \
    bool Read(unsigned char* value);                                                                                   \
    bool Read(short* value);                                                                                           \
    bool Read(unsigned short* value);                                                                                  \
    bool Read(int* value);                                                                                             \
    bool Read(unsigned long* value);                                                                                   \
    bool Read(float* value);                                                                                           \
    bool Read15(unsigned short* value);                                                                                \
    bool Read30(unsigned long* value);                                                                                 \
    bool Read(zet::String_T<wchar_t>* value);                                                                          \
    bool Read(zet::Uuid* value);                                                                                       \
    bool Read(zet::Buffer* value);                                                                                     \
    bool Read(void* data, int size);                                                                                   \
    bool Read(bool& value)                                                                                             \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(char& value)                                                                                             \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(unsigned char& value)                                                                                    \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(short& value)                                                                                            \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(unsigned short& value)                                                                                   \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(int& value)                                                                                              \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(unsigned long& value)                                                                                    \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(float& value)                                                                                            \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read15(unsigned short& value)                                                                                 \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read30(unsigned long& value)                                                                                  \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(zet::String_T<wchar_t>& value)                                                                           \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(zet::Uuid& value)                                                                                        \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }                                                                                                                  \
    bool Read(zet::Buffer& value)                                                                                      \
    {                                                                                                                  \
        return Read(&value);                                                                                           \
    }
