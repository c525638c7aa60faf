#pragma once
// Observers of a model. A view holds the Subscription of each model it
// shows: dropping it ends the observation, and a subscription that outlives
// its model does nothing, so that neither side has to die first.

#include <cstdint>
#include <functional>
#include <memory>
#include <utility>
#include <vector>

namespace qvrl {

class Observers {
    struct List {
        std::vector<std::pair<uint64_t, std::function<void()>>> entries;
        uint64_t next = 0;
    };

public:
    class Subscription {
    public:
        Subscription() = default;
        Subscription(const Subscription&) = delete;
        Subscription& operator=(const Subscription&) = delete;
        Subscription(Subscription&& o) noexcept : list_(std::move(o.list_)), id_(o.id_) { o.list_.reset(); }
        Subscription& operator=(Subscription&& o) noexcept {
            if (this != &o) {
                Stop();
                list_ = std::move(o.list_);
                id_ = o.id_;
                o.list_.reset();
            }
            return *this;
        }
        ~Subscription() { Stop(); }
        void Stop() {
            if (auto l = list_.lock())
                for (auto& e : l->entries)
                    if (e.first == id_) e.second = nullptr;  // erased by the next Add, not mid-notification
            list_.reset();
        }

    private:
        friend class Observers;
        Subscription(std::weak_ptr<List> list, uint64_t id) : list_(std::move(list)), id_(id) {}
        std::weak_ptr<List> list_;
        uint64_t id_ = 0;
    };

    [[nodiscard]] Subscription Add(std::function<void()> observer) {
        auto& e = list_->entries;
        std::erase_if(e, [](const auto& x) { return !x.second; });
        e.emplace_back(++list_->next, std::move(observer));
        return Subscription(list_, list_->next);
    }

    // An observer may subscribe or stop others while it runs: indices, not
    // iterators, and a copy of each call.
    void Notify() const {
        const std::shared_ptr<List> keep = list_;
        for (size_t i = 0; i < keep->entries.size(); ++i)
            if (auto f = keep->entries[i].second) f();
    }

private:
    std::shared_ptr<List> list_ = std::make_shared<List>();
};

}  // namespace qvrl
