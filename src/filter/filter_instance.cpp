#include "filter/filter_instance.h"

#include <array>

namespace {

using K = schema::CandidateKind;

const std::array<FilterInstanceTraits, 7>& allTraits() {
    static const std::array<FilterInstanceTraits, 7> traits{{
        {FilterInstance::GAgan, "GAgan", K::Zuhe, OpeningMode::ExpandPicks, FirstView::IdxRange,
         filter_texts::kAskNumbers, true, {}, false},
        {FilterInstance::Gdanagan, "Gdanagan", K::Zuhe, OpeningMode::ExpandBankers, FirstView::IdxRange,
         filter_texts::kAskNumbersInOrder, false, {}, false},
        {FilterInstance::GAganRote, "GAganRote", K::ZuheRote, OpeningMode::FillFromWheel, FirstView::Ordered,
         filter_texts::kAskNumbers, false, QStringLiteral("zuheRote.xls"), false},
        {FilterInstance::GAganMb, "GAganMb", K::Zuhe, OpeningMode::Keep, FirstView::IdxRange,
         filter_texts::kAskNumbers, false, {}, false},
        {FilterInstance::GAganRead, "GAganRead", K::ZuheRead, OpeningMode::Keep, FirstView::Live,
         filter_texts::kAskNumbers, false, QStringLiteral("zuheRead.xls"), false},
        {FilterInstance::GAganRoteMb, "GAganRoteMb", K::ZuheRote, OpeningMode::Keep, FirstView::Ordered,
         filter_texts::kAskNumbers, false, QStringLiteral("zuheRote.xls"), false},
        {FilterInstance::GAganZhMb, "GAganZhMb", K::ZuheMoban, OpeningMode::Keep, FirstView::Live,
         filter_texts::kAskNumbers, false, QStringLiteral("zuheMoban.xls"), true},
    }};
    return traits;
}

}  // namespace

const FilterInstanceTraits& filterInstanceTraits(FilterInstance instance) {
    return allTraits()[static_cast<size_t>(instance)];
}

namespace filter_texts {
QString caption(qint64 count) { return kCaptionHead + QString::number(count) + kCaptionTail; }
}  // namespace filter_texts
