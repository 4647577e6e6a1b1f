#pragma once

#include <QTypeInfo>

#include <cstring>
#include <memory>
#include <utility>

namespace paravue
{

/// A value that can stand at any address, so that a structure which holds it needs no alignment gaps.
///
/// The value itself may only be used at an aligned address, as every object; here are its bytes. It is
/// written by assignment and read as a copy, which for the implicitly shared types that this is for costs a
/// reference:
///
///     record.payload = bytes;
///     const QByteArray payload = record.payload;
///
/// take() gives the value away, so that it can be changed and put back without a second reference to it.
template <typename T>
class Packed
{
    static_assert(QTypeInfo<T>::isRelocatable, "Only what may be moved as bytes can be packed");

public:
    Packed() : Packed(T()) {}
    Packed(T value) { put(std::move(value)); }
    Packed(const Packed &other) : Packed(other.value()) {}
    Packed(Packed &&other) noexcept : Packed(other.take()) {}
    ~Packed() { destroy(); }

    Packed &operator=(const Packed &other) { return *this = other.value(); }
    Packed &operator=(Packed &&other) noexcept { return *this = other.take(); }
    Packed &operator=(T value)
    {
        destroy();
        put(std::move(value));
        return *this;
    }

    operator T() const { return value(); }
    T value() const
    {
        const Aligned aligned(m_bytes);
        return aligned.value;
    }
    /// The value; an empty one stays here.
    T take()
    {
        Aligned aligned(m_bytes);
        T value = std::move(aligned.value);
        std::memcpy(m_bytes, &aligned.value, sizeof(T));
        return value;
    }

    auto size() const
    {
        const Aligned aligned(m_bytes);
        return aligned.value.size();
    }
    bool isEmpty() const { return size() == 0; }

    friend bool operator==(const Packed &a, const Packed &b) { return a.value() == b.value(); }
    template <typename Other>
    friend bool operator==(const Packed &a, const Other &b)
    {
        return a.value() == b;
    }

private:
    /// The bytes at an aligned address. What they are the value of is not destroyed here: it stays theirs.
    union Aligned {
        explicit Aligned(const unsigned char (&bytes)[sizeof(T)])
        {
            std::memcpy(static_cast<void *>(&value), bytes, sizeof(T));
        }
        explicit Aligned(T &&initial) : value(std::move(initial)) {}
        ~Aligned() {}
        T value;
    };

    void put(T &&value)
    {
        const Aligned aligned(std::move(value));
        std::memcpy(m_bytes, &aligned.value, sizeof(T));
    }
    void destroy()
    {
        Aligned aligned(m_bytes);
        std::destroy_at(&aligned.value);
    }

    unsigned char m_bytes[sizeof(T)];
};

} // namespace paravue
