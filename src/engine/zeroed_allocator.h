#pragma once

#include <cstdlib>
#include <new>
#include <utility>
#include <vector>

// An allocator for the large columns: memory comes zeroed from calloc (for large blocks fresh
// pages from the system, which cost nothing until first touched), and value-initialising an
// element does not write it again. A column of millions of rows is thus allocated at once and
// its pages are first touched by the kernel that fills it, possibly on several threads.
template <typename T>
struct ZeroedAllocator {
    using value_type = T;
    ZeroedAllocator() = default;
    template <typename U>
    ZeroedAllocator(const ZeroedAllocator<U>&) noexcept {}

    T* allocate(std::size_t n) {
        void* p = std::calloc(n, sizeof(T));
        if (!p) throw std::bad_alloc();
        return static_cast<T*>(p);
    }
    void deallocate(T* p, std::size_t) noexcept { std::free(p); }

    // Zero is already there.
    template <typename U>
    void construct(U*) noexcept {}
    template <typename U, typename... Args>
    void construct(U* p, Args&&... args) {
        ::new (static_cast<void*>(p)) U(std::forward<Args>(args)...);
    }

    template <typename U>
    bool operator==(const ZeroedAllocator<U>&) const noexcept {
        return true;
    }
};

template <typename T>
using ZeroedVector = std::vector<T, ZeroedAllocator<T>>;
