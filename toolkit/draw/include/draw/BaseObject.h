// Reference-counted objects, and the pointer that counts for you.
#pragma once

#include <atomic>
#include <cstdint>
#include <utility>

namespace Sorel {

class CBaseObject;

/// Receives messages. A message is a pointer to a constant text and is compared by its address.
class IMessageResponder {
  public:
    /// 1 when the message was acted upon, else 0.
    virtual int notify(CBaseObject* sender, const char* message) = 0;

  protected:
    ~IMessageResponder() = default;
};

/// Lives as long as somebody holds a reference; the creator holds the first.
/// Threads: retain and release on any thread, all else on the GUI thread.
class CBaseObject : public IMessageResponder {
  public:
    CBaseObject() = default;
    /// A copy is an object of its own: its count starts at 1.
    CBaseObject(const CBaseObject&) {}
    CBaseObject& operator=(const CBaseObject&) = delete;

    int notify(CBaseObject*, const char*) override { return 0; }
    virtual ~CBaseObject() = default;
    /// Destroys the object when the count falls below 1.
    virtual void release() {
        if (references_.fetch_sub(1, std::memory_order_acq_rel) <= 1) delete this;
    }
    virtual void retain() { references_.fetch_add(1, std::memory_order_relaxed); }

    /// For tests and assertions.
    std::int32_t references() const { return references_.load(std::memory_order_relaxed); }

  private:
    std::atomic<std::int32_t> references_{1};
};

/// Holds one counted reference to a CBaseObject.
template <class T>
class Counted {
  public:
    Counted() = default;
    Counted(std::nullptr_t) {}
    /// Takes a reference of its own.
    explicit Counted(T* object)
        : object_(object) {
        if (object_) object_->retain();
    }
    Counted(const Counted& other)
        : Counted(other.object_) {}
    Counted(Counted&& other) noexcept
        : object_(std::exchange(other.object_, nullptr)) {}
    ~Counted() {
        if (object_) object_->release();
    }
    Counted& operator=(Counted other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }

    /// Takes over the reference that the caller holds, as from `new`.
    static Counted adopt(T* object) {
        Counted result;
        result.object_ = object;
        return result;
    }
    template <class... Arguments>
    static Counted make(Arguments&&... arguments) {
        return adopt(new T(std::forward<Arguments>(arguments)...));
    }

    T* get() const { return object_; }
    T* operator->() const { return object_; }
    T& operator*() const { return *object_; }
    explicit operator bool() const { return object_ != nullptr; }
    /// Hands the reference to the caller.
    T* detach() { return std::exchange(object_, nullptr); }

  private:
    T* object_ = nullptr;
};

} // namespace Sorel
