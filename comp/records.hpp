// The building blocks of records: typed listeners, list links and list walks, without overhead.
//
// A record embeds its listeners and its list links by value. Both detach themselves when the record is
// deleted, so a destroy handler can't leave one behind. wlroots aborts when an object dies while one of its
// signals still has a listener.
#pragma once

#include "wlr.hpp"

#include <bit>
#include <cstddef>
#include <type_traits>
#include <utility>

template <class> struct member_traits;
template <class Record, class Member> struct member_traits<Member Record::*> {
    using record = Record;
};
template <auto Member> using record_of = typename member_traits<decltype(Member)>::record;

// Returns the record that contains the member at `raw`, like wl_container_of. `raw` must point to that
// member.
template <auto Member, class Raw> [[nodiscard]] record_of<Member> *owner_of(Raw *raw)
{
    static_assert(sizeof(Member) == sizeof(std::ptrdiff_t), "a pointer to a data member is its offset");
    const auto offset = std::bit_cast<std::ptrdiff_t>(Member);
    return reinterpret_cast<record_of<Member> *>(reinterpret_cast<char *>(raw) - offset);
}

struct listener : wl_listener {
    listener() : wl_listener{} { wl_list_init(&link); }
    ~listener() { wl_list_remove(&link); }
    listener(const listener &) = delete;
    listener &operator=(const listener &) = delete;
};
static_assert(sizeof(listener) == sizeof(wl_listener) && std::is_standard_layout_v<listener>);

// Detaches a listener whose object dies before its record does. A second call is harmless.
inline void unlisten(listener &l)
{
    wl_list_remove(&l.link);
    wl_list_init(&l.link);
}

// listen<&vantore_output::frame, output_frame>(o, wlr_output->events.frame);
// The handler takes (record &) or (record &, event *). Listening again moves the listener to the new signal.
template <auto Member, auto Handler> void listen(record_of<Member> &record, wl_signal &signal)
{
    listener &l = record.*Member;
    wl_list_remove(&l.link);
    l.notify = [](wl_listener *raw, void *data) noexcept {
        auto &owner = *owner_of<Member>(raw);
        if constexpr (std::is_invocable_v<decltype(Handler), record_of<Member> &>)
            Handler(owner);
        else
            [&]<class Event>(void (*handler)(record_of<Member> &, Event *)) {
                handler(owner, static_cast<Event *>(data));
            }(Handler);
    };
    wl_signal_add(&signal, &l);
}

struct signal_head : wl_signal {
    signal_head() { wl_signal_init(this); }
    signal_head(const signal_head &) = delete;
    signal_head &operator=(const signal_head &) = delete;
};

struct list_head : wl_list {
    list_head() { wl_list_init(this); }
    list_head(const list_head &) = delete;
    list_head &operator=(const list_head &) = delete;
};

// The opposite of wl_list_empty, without a call into the library.
inline bool has_any(const wl_list &list)
{
    return list.next != &list;
}

struct list_link : wl_list {
    list_link() { wl_list_init(this); }
    ~list_link() { wl_list_remove(this); }
    list_link(const list_link &) = delete;
    list_link &operator=(const list_link &) = delete;
};
static_assert(sizeof(list_link) == sizeof(wl_list) && sizeof(list_head) == sizeof(wl_list));

// A second call is harmless.
inline void unlink_from_list(list_link &link)
{
    wl_list_remove(&link);
    wl_list_init(&link);
}

inline void move_to_front(wl_list &head, list_link &link)
{
    wl_list_remove(&link);
    wl_list_insert(&head, &link);
}

inline void move_to_back(wl_list &head, list_link &link)
{
    wl_list_remove(&link);
    wl_list_insert(head.prev, &link);
}

// for (auto &t : each<&vantore_toplevel::link>(server.toplevels))
// The body may remove the current element from the list, but no other one. A const list gives mutable records
// too, because the constness of a list says nothing about its records.
template <auto Link> class each
{
public:
    explicit each(const wl_list &list) : head(const_cast<wl_list *>(&list)) {}

    struct iterator {
        wl_list *at, *next;
        record_of<Link> &operator*() const { return *owner_of<Link>(at); }
        iterator &operator++()
        {
            at = next;
            next = at->next;
            return *this;
        }
        bool operator!=(const wl_list *end) const { return at != end; }
    };

    [[nodiscard]] iterator begin() const { return {head->next, head->next->next}; }
    [[nodiscard]] const wl_list *end() const { return head; }
    // Null when the list is empty.
    [[nodiscard]] record_of<Link> *first() const
    {
        return head->next == head ? nullptr : owner_of<Link>(head->next);
    }

private:
    wl_list *head;
};
