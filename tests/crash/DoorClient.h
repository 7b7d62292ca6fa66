#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <string>

#include "crash/DoomedProgram.h"
#include "crash/DoorPlan.h"

namespace lorvane::crash {

/// Sends the requests of a plan, so many ahead of the answers, and takes the answers: none may be an error or another object than was foreseen.
class DoorClient final : public Client {
public:
    /// What it does once it has so many answers and has said all that it may.
    struct Leaving {
        std::size_t answers;
        enum class Manner {
            EndsItsInput,  ///< and listens to the end
            GoesAway,      ///< and listens no more
        } manner;
        bool inTheMiddle = false;  ///< of a line: half of the next request has gone out
    };

    /// Without leaving it ends its input when everything is answered. The plan outlives it.
    DoorClient(const DoorPlan& plan, std::size_t ahead, std::optional<Leaving> leaving = {});

    std::size_t sent() const;  ///< requests, whole
    std::size_t answers() const noexcept { return ids_.size(); }
    bool isAllAnswered() const { return answers() == plan_.requests().size(); }
    /// The last request that is answered; 0 for none.
    std::size_t answered() const { return ids_.empty() ? 0 : *ids_.rbegin(); }
    /// What may be saved now.
    std::span<const DoorPlan::State> states() const { return plan_.statesBetween(answered(), sent()); }
    /// For failing tests: the requests that went out, with what is known of them.
    std::string transcript() const;

    std::string_view says() override;
    void said(std::size_t bytes) override { said_ += bytes; }
    void hears(std::string_view bytes) override;
    bool isThere() const override { return !(isLeaving() && leaving_->manner == Leaving::Manner::GoesAway); }
    bool maySayMore() const override { return !isLeaving() && !isAllAnswered(); }

private:
    bool isLeaving() const { return leaving_ && answers() >= leaving_->answers && said_ >= sizeToSay(); }
    std::size_t sizeToSay() const;
    void takeLine(const std::string& line);

    const DoorPlan& plan_;
    std::size_t ahead_;
    std::optional<Leaving> leaving_;
    std::string text_;               // all lines
    std::vector<std::size_t> ends_;  // of each line in it
    std::size_t said_ = 0;
    std::string heard_;  // no whole line yet
    std::set<std::size_t> ids_;
};

}  // namespace lorvane::crash
