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

/// A Qt container at any address, so that a structure that holds it needs no alignment gaps. It is used as
/// the container itself:
///
///     for (const STREAM_T &stream : header.streams) ...
///     header.texts[1] = record.payload.toHex();
///
/// A container may only be used at an aligned address, as every object may; under #pragma pack each of its
/// calls would be undefined behaviour, which the sanitizers report. Here its bytes are moved to an aligned
/// address for each call. The elements do not move, so iterators, pointers and references to them stay valid
/// as long as those of the container itself would. A function that the container does not have does not
/// compile here either.
///
/// What this earns is the layout, not time: to fill, copy and read a record takes 60 ns, with fields at
/// aligned addresses 37 ns (bench_parser, recordsBesideAligned). The many functions make a field usable as
/// the container; without them a reader would copy each value first, 100 ns (recordsBesideCopies).
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
    ~Packed() { Writer(*this)->~T(); }

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
    /// The value, which leaves an empty one here.
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

    decltype(auto) resize(auto &&...of) { return Writer(*this)->resize(of...); }
    decltype(auto) reserve(auto &&...of) { return Writer(*this)->reserve(of...); }
    decltype(auto) clear(auto &&...of) { return Writer(*this)->clear(of...); }
    decltype(auto) chop(auto &&...of) { return Writer(*this)->chop(of...); }
    decltype(auto) truncate(auto &&...of) { return Writer(*this)->truncate(of...); }
    decltype(auto) squeeze(auto &&...of) { return Writer(*this)->squeeze(of...); }
    decltype(auto) detach(auto &&...of) { return Writer(*this)->detach(of...); }
    decltype(auto) removeAt(auto &&...of) { return Writer(*this)->removeAt(of...); }
    decltype(auto) removeFirst(auto &&...of) { return Writer(*this)->removeFirst(of...); }
    decltype(auto) removeLast(auto &&...of) { return Writer(*this)->removeLast(of...); }
    decltype(auto) removeAll(auto &&...of) { return Writer(*this)->removeAll(of...); }
    decltype(auto) takeFirst(auto &&...of) { return Writer(*this)->takeFirst(of...); }
    decltype(auto) takeLast(auto &&...of) { return Writer(*this)->takeLast(of...); }
    decltype(auto) takeAt(auto &&...of) { return Writer(*this)->takeAt(of...); }
    decltype(auto) swapItemsAt(auto &&...of) { return Writer(*this)->swapItemsAt(of...); }
    decltype(auto) move(auto &&...of) { return Writer(*this)->move(of...); }
    decltype(auto) emplace_back(auto &&...of) { return Writer(*this)->emplace_back(of...); }
    decltype(auto) emplaceBack(auto &&...of) { return Writer(*this)->emplaceBack(of...); }

    Packed &append(auto &&...of) { return Writer(*this)->append(of...), *this; }
    Packed &prepend(auto &&...of) { return Writer(*this)->prepend(of...), *this; }
    Packed &push_back(auto &&...of) { return Writer(*this)->push_back(of...), *this; }
    Packed &push_front(auto &&...of) { return Writer(*this)->push_front(of...), *this; }
    Packed &insert(auto &&...of) { return Writer(*this)->insert(of...), *this; }
    Packed &remove(auto &&...of) { return Writer(*this)->remove(of...), *this; }
    Packed &replace(auto &&...of) { return Writer(*this)->replace(of...), *this; }
    Packed &fill(auto &&...of) { return Writer(*this)->fill(of...), *this; }
    Packed &operator+=(auto &&of) { return *Writer(*this) += of, *this; }
    Packed &operator<<(auto &&of) { return *Writer(*this) << of, *this; }

private:
    /// The value at an aligned address. It is not destroyed there, as the bytes still own what it holds.
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

    /// Writes the changed value back.
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
        std::memcpy(m_bytes, static_cast<const void *>(&value), sizeof(T));
        std::construct_at(&value); // the bytes own what it held
    }

    unsigned char m_bytes[sizeof(T)];
};

} // namespace paravue

namespace QtPrivate
{

/// Otherwise a call of a function that takes either a byte array or a view of bytes would be ambiguous.
template <>
struct IsContainerCompatibleWithQByteArrayView<paravue::Packed<QByteArray>> : std::false_type {
};

} // namespace QtPrivate
