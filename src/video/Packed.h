#pragma once

#include <QByteArrayView>
#include <QTypeInfo>

#include <concepts>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <type_traits>
#include <utility>

namespace paravue
{

/// A container of Qt that can stand at any address, so that a structure which holds it needs no alignment
/// gaps. It is used as the container itself:
///
///     for (const STREAM_T &stream : header.streams) ...
///     header.texts[1] = record.payload.toHex();
///
/// The container may only be used at an aligned address, as every object; here are its bytes, which are moved
/// to one for each call. Its elements stay where they are, so iterators, pointers and references to them
/// remain valid as long as those of the container itself would. A function that it does not have does not
/// compile here either.
template <typename T>
class Packed
{
    static_assert(QTypeInfo<T>::isRelocatable, "Only what may be moved as bytes can be packed");

    template <typename Value>
    static constexpr bool IsPlain =
        std::is_convertible_v<Value, T> && !std::is_same_v<std::remove_cvref_t<Value>, Packed>;

public:
    using value_type = typename T::value_type;
    using iterator = typename T::iterator;
    using const_iterator = typename T::const_iterator;

    Packed() : Packed(T()) {}
    template <typename Value = T>
    requires IsPlain<Value> Packed(Value &&value) { put(std::forward<Value>(value)); }
    Packed(std::initializer_list<value_type> values) requires
        std::constructible_from<T, std::initializer_list<value_type>> : Packed(T(values))
    {
    }
    Packed(const Packed &other) : Packed(other.value()) {}
    Packed(Packed &&other) noexcept : Packed(other.take()) {}
    ~Packed()
    {
        Writer value(*this);
        std::destroy_at(&*value);
    }

    Packed &operator=(const Packed &other) { return *this = other.value(); }
    Packed &operator=(Packed &&other) noexcept { return *this = other.take(); }
    template <typename Value = T>
    requires IsPlain<Value> Packed &operator=(Value &&value)
    {
        *Writer(*this) = std::forward<Value>(value);
        return *this;
    }

    operator T() const { return value(); }
    T value() const { return *Reader(*this); }
    /// The value; an empty one stays here.
    T take() { return std::exchange(*Writer(*this), T()); }

    friend bool operator==(const Packed &a, const Packed &b) { return *Reader(a) == *Reader(b); }
    template <typename Other>
    friend bool operator==(const Packed &a, const Other &b)
    {
        return *Reader(a) == b;
    }

    decltype(auto) size() const { return Reader(*this)->size(); }
    decltype(auto) length() const { return Reader(*this)->length(); }
    decltype(auto) isEmpty() const { return Reader(*this)->isEmpty(); }
    decltype(auto) isNull() const { return Reader(*this)->isNull(); }
    decltype(auto) capacity() const { return Reader(*this)->capacity(); }
    decltype(auto) constData() const { return Reader(*this)->constData(); }
    decltype(auto) cbegin() const { return Reader(*this)->cbegin(); }
    decltype(auto) cend() const { return Reader(*this)->cend(); }
    decltype(auto) constBegin() const { return Reader(*this)->constBegin(); }
    decltype(auto) constEnd() const { return Reader(*this)->constEnd(); }
    decltype(auto) constFirst() const { return Reader(*this)->constFirst(); }
    decltype(auto) constLast() const { return Reader(*this)->constLast(); }
    decltype(auto) toUpper() const { return Reader(*this)->toUpper(); }
    decltype(auto) toLower() const { return Reader(*this)->toLower(); }
    decltype(auto) trimmed() const { return Reader(*this)->trimmed(); }
    decltype(auto) simplified() const { return Reader(*this)->simplified(); }
    decltype(auto) at(auto &&...of) const { return Reader(*this)->at(of...); }
    decltype(auto) value(auto &&...of) const { return Reader(*this)->value(of...); }
    auto count() const { return size(); }
    decltype(auto) count(const auto &of) const { return Reader(*this)->count(of); }
    decltype(auto) contains(auto &&...of) const { return Reader(*this)->contains(of...); }
    decltype(auto) startsWith(auto &&...of) const { return Reader(*this)->startsWith(of...); }
    decltype(auto) endsWith(auto &&...of) const { return Reader(*this)->endsWith(of...); }
    decltype(auto) indexOf(auto &&...of) const { return Reader(*this)->indexOf(of...); }
    decltype(auto) lastIndexOf(auto &&...of) const { return Reader(*this)->lastIndexOf(of...); }
    decltype(auto) mid(auto &&...of) const { return Reader(*this)->mid(of...); }
    decltype(auto) left(auto &&...of) const { return Reader(*this)->left(of...); }
    decltype(auto) right(auto &&...of) const { return Reader(*this)->right(of...); }
    decltype(auto) sliced(auto &&...of) const { return Reader(*this)->sliced(of...); }
    decltype(auto) chopped(auto &&...of) const { return Reader(*this)->chopped(of...); }
    decltype(auto) toHex(auto &&...of) const { return Reader(*this)->toHex(of...); }
    decltype(auto) toBase64(auto &&...of) const { return Reader(*this)->toBase64(of...); }
    decltype(auto) toInt(auto &&...of) const { return Reader(*this)->toInt(of...); }
    decltype(auto) toUInt(auto &&...of) const { return Reader(*this)->toUInt(of...); }
    decltype(auto) toDouble(auto &&...of) const { return Reader(*this)->toDouble(of...); }
    decltype(auto) split(auto &&...of) const { return Reader(*this)->split(of...); }
    decltype(auto) repeated(auto &&...of) const { return Reader(*this)->repeated(of...); }
    decltype(auto) compare(auto &&...of) const { return Reader(*this)->compare(of...); }
    decltype(auto) first(auto... size) const { return Reader(*this)->first(size...); }
    decltype(auto) last(auto... size) const { return Reader(*this)->last(size...); }
    decltype(auto) operator[](qsizetype at) const { return Reader(*this)->operator[](at); }

    decltype(auto) begin() const { return Reader(*this)->begin(); }
    decltype(auto) begin() { return Writer(*this)->begin(); }
    decltype(auto) end() const { return Reader(*this)->end(); }
    decltype(auto) end() { return Writer(*this)->end(); }
    decltype(auto) data() const { return Reader(*this)->data(); }
    decltype(auto) data() { return Writer(*this)->data(); }
    decltype(auto) front() const { return Reader(*this)->front(); }
    decltype(auto) front() { return Writer(*this)->front(); }
    decltype(auto) back() const { return Reader(*this)->back(); }
    decltype(auto) back() { return Writer(*this)->back(); }
    decltype(auto) rbegin() const { return Reader(*this)->rbegin(); }
    decltype(auto) rbegin() { return Writer(*this)->rbegin(); }
    decltype(auto) rend() const { return Reader(*this)->rend(); }
    decltype(auto) rend() { return Writer(*this)->rend(); }
    decltype(auto) first() { return Writer(*this)->first(); }
    decltype(auto) last() { return Writer(*this)->last(); }
    decltype(auto) operator[](qsizetype at) { return Writer(*this)->operator[](at); }

    decltype(auto) resize(auto &&...with)
    {
        return Writer(*this)->resize(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) reserve(auto &&...with)
    {
        return Writer(*this)->reserve(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) clear(auto &&...with)
    {
        return Writer(*this)->clear(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) chop(auto &&...with) { return Writer(*this)->chop(std::forward<decltype(with)>(with)...); }
    decltype(auto) truncate(auto &&...with)
    {
        return Writer(*this)->truncate(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) squeeze(auto &&...with)
    {
        return Writer(*this)->squeeze(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) detach(auto &&...with)
    {
        return Writer(*this)->detach(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) removeAt(auto &&...with)
    {
        return Writer(*this)->removeAt(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) removeFirst(auto &&...with)
    {
        return Writer(*this)->removeFirst(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) removeLast(auto &&...with)
    {
        return Writer(*this)->removeLast(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) removeAll(auto &&...with)
    {
        return Writer(*this)->removeAll(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) takeFirst(auto &&...with)
    {
        return Writer(*this)->takeFirst(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) takeLast(auto &&...with)
    {
        return Writer(*this)->takeLast(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) takeAt(auto &&...with)
    {
        return Writer(*this)->takeAt(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) swapItemsAt(auto &&...with)
    {
        return Writer(*this)->swapItemsAt(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) move(auto &&...with) { return Writer(*this)->move(std::forward<decltype(with)>(with)...); }
    decltype(auto) emplace_back(auto &&...with)
    {
        return Writer(*this)->emplace_back(std::forward<decltype(with)>(with)...);
    }
    decltype(auto) emplaceBack(auto &&...with)
    {
        return Writer(*this)->emplaceBack(std::forward<decltype(with)>(with)...);
    }

    Packed &append(auto &&...with)
    {
        Writer(*this)->append(std::forward<decltype(with)>(with)...);
        return *this;
    }
    Packed &prepend(auto &&...with)
    {
        Writer(*this)->prepend(std::forward<decltype(with)>(with)...);
        return *this;
    }
    Packed &push_back(auto &&...with)
    {
        Writer(*this)->push_back(std::forward<decltype(with)>(with)...);
        return *this;
    }
    Packed &push_front(auto &&...with)
    {
        Writer(*this)->push_front(std::forward<decltype(with)>(with)...);
        return *this;
    }
    Packed &insert(auto &&...with)
    {
        Writer(*this)->insert(std::forward<decltype(with)>(with)...);
        return *this;
    }
    Packed &remove(auto &&...with)
    {
        Writer(*this)->remove(std::forward<decltype(with)>(with)...);
        return *this;
    }
    Packed &replace(auto &&...with)
    {
        Writer(*this)->replace(std::forward<decltype(with)>(with)...);
        return *this;
    }
    Packed &fill(auto &&...with)
    {
        Writer(*this)->fill(std::forward<decltype(with)>(with)...);
        return *this;
    }
    Packed &operator+=(auto &&with)
    {
        *Writer(*this) += std::forward<decltype(with)>(with);
        return *this;
    }
    Packed &operator<<(auto &&with)
    {
        *Writer(*this) << std::forward<decltype(with)>(with);
        return *this;
    }

private:
    /// The value at an aligned address. It is not destroyed there: it stays that of the bytes.
    class Reader
    {
    public:
        explicit Reader(const Packed &packed)
        {
            std::memcpy(static_cast<void *>(&m_value), packed.m_bytes, sizeof(T));
        }
        ~Reader() {}
        Reader(const Reader &) = delete;
        Reader &operator=(const Reader &) = delete;
        const T *operator->() const { return &m_value; }
        const T &operator*() const { return m_value; }

    protected:
        union {
            T m_value;
        };
    };

    /// Puts the value back as it has become.
    class Writer : public Reader
    {
    public:
        explicit Writer(Packed &packed) : Reader(packed), m_packed(packed) {}
        ~Writer() { std::memcpy(m_packed.m_bytes, static_cast<const void *>(&this->m_value), sizeof(T)); }
        T *operator->() { return &this->m_value; }
        T &operator*() { return this->m_value; }

    private:
        Packed &m_packed;
    };

    void put(T value)
    {
        union Kept {
            explicit Kept(T &&value) : value(std::move(value)) {}
            ~Kept() {}
            T value;
        } const kept(std::move(value));
        std::memcpy(m_bytes, static_cast<const void *>(&kept.value), sizeof(T));
    }

    unsigned char m_bytes[sizeof(T)];
};

} // namespace paravue

namespace QtPrivate
{

/// Else whatever takes a byte array or a view of bytes would not know which of them is meant.
template <>
struct IsContainerCompatibleWithQByteArrayView<paravue::Packed<QByteArray>> : std::false_type {
};

} // namespace QtPrivate
