/// @file
/// ResultEvent: an Event whose listeners return results.
///
///     ResultEvent<bool, int> asked;
///     asked.add([](int door) { ... });
///     const bool isAllowed = asked.callUntil([](bool answer) { return !answer; }, 3) == std::nullopt;
///
/// Listeners, connections and changes during a call are those of Event.
///
/// Cost: as an Event. `collect` also allocates the vector.
///
/// Threads: an event and its connections belong to one thread.
#pragma once

#include "Vorn/SharedObjects/EventListeners.h"

#include <optional>
#include <vector>

namespace Vorn {

/// A list of listeners that take Args and return Result.
template <class Result, class... Args>
class ResultEvent : public EventListeners<Delegate<Result, VornPrivate::ListenerArgument<Args>...>> {
    static_assert(!std::is_void_v<Result>, "listeners without a result are those of Event<Args...>");
    static_assert(!std::is_function_v<Result>, "write ResultEvent<Result, Args...>");
    static_assert((!std::is_void_v<Args> && ...), "an event without arguments is written ResultEvent<Result>");
    static_assert((!std::is_rvalue_reference_v<Args> && ...), "each listener is given the arguments anew");

    // What `collect` and `callUntil` return; any type for references, which they refuse.
    using Kept = std::conditional_t<std::is_reference_v<Result>, bool, Result>;

public:
    /// An event without listeners.
    ResultEvent() {} // not defaulted, which would make it an aggregate in C++17

    /// Takes over the listeners and connections of `other`, which has none afterwards. Calls that are running go on.
    ResultEvent(ResultEvent&&) noexcept = default;

    /// Releases the listeners, and takes over those of `other`. Calls of this event that are running end.
    ResultEvent& operator=(ResultEvent&&) noexcept = default;

    void swap(ResultEvent& other) noexcept { this->swapListeners(other); }
    friend void swap(ResultEvent& a, ResultEvent& b) noexcept { a.swap(b); }

    /// Calls the listeners in order and gives each result to `visit`. If `visit` returns a bool, false ends the call.
    /// Throws what a listener or `visit` throws.
    template <class Visit>
    void callEach(Visit&& visit, Args... args) const {
        this->template dispatch<true>([&](const DelegatePOD& pod) {
            const auto caller = VornPrivate::typedCaller<Result, VornPrivate::ListenerArgument<Args>...>(pod);
            if constexpr (std::is_same_v<std::invoke_result_t<Visit&, Result>, bool>) {
                return visit(caller(pod.object, pod.context, args...));
            } else {
                visit(caller(pod.object, pod.context, args...));
                return true;
            }
        });
    }

    /// Calls the listeners in order and ignores the results.
    void operator()(Args... args) const {
        callEach([](auto&&) {}, std::forward<Args>(args)...);
    }

    /// Returns the results in order.
    [[nodiscard]] std::vector<Kept> collect(Args... args) const {
        checkKept<Result>();
        std::vector<Kept> results;
        if constexpr (!std::is_reference_v<Result>) {
            callEach([&](Result result) { results.push_back(std::move(result)); }, std::forward<Args>(args)...);
        }
        return results;
    }

    /// Calls the listeners until `predicate` returns true for a result, and returns that result; an empty optional if
    /// there is none. The listeners behind it are not called.
    template <class Predicate>
    std::optional<Kept> callUntil(Predicate&& predicate, Args... args) const {
        checkKept<Result>();
        std::optional<Kept> found;
        if constexpr (!std::is_reference_v<Result>) {
            callEach(
                [&](Result result) -> bool {
                    if (!predicate(result)) return true;
                    found.emplace(std::move(result));
                    return false;
                },
                std::forward<Args>(args)...);
        }
        return found;
    }

private:
    template <class Checked>
    static void checkKept() {
        static_assert(!std::is_reference_v<Checked>, "results that are references are visited with callEach");
    }
};

} // namespace Vorn
