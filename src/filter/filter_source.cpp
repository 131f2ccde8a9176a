#include "filter/filter_source.h"

#include <array>

namespace {

using K = schema::CandidateKind;

const std::array<FilterSourceTraits, 10>& allTraits() {
    static const std::array<FilterSourceTraits, 10> traits{{
        {FilterSource::Expansion,
         "GAgan",
         K::Combinations,
         OpeningMode::ExpandPicks,
         FirstView::IdxRange,
         filter_source::kAskNumbers,
         true,
         {},
         false},
        {FilterSource::BankerExpansion,
         "Gdanagan",
         K::Combinations,
         OpeningMode::ExpandBankers,
         FirstView::IdxRange,
         filter_source::kAskNumbersInOrder,
         false,
         {},
         false},
        {FilterSource::Wheel, "GAganRote", K::Wheel, OpeningMode::FillFromWheel, FirstView::Ordered,
         filter_source::kAskNumbers, false, QStringLiteral("zuheRote.xls"), false},
        {FilterSource::StoredExpansion,
         "GAganMb",
         K::Combinations,
         OpeningMode::Keep,
         FirstView::IdxRange,
         filter_source::kAskNumbers,
         false,
         {},
         false},
        {FilterSource::Imported, "GAganRead", K::Imported, OpeningMode::Keep, FirstView::Live,
         filter_source::kAskNumbers, false, QStringLiteral("zuheRead.xls"), false},
        {FilterSource::StoredWheel, "GAganRoteMb", K::Wheel, OpeningMode::Keep, FirstView::Ordered,
         filter_source::kAskNumbers, false, QStringLiteral("zuheRote.xls"), false},
        {FilterSource::CombinationTemplate, "GAganZhMb", K::Template, OpeningMode::Keep, FirstView::Live,
         filter_source::kAskNumbers, false, QStringLiteral("zuheMoban.xls"), true},
        {FilterSource::SixExpansion, "GAganf", K::SixNumbers, OpeningMode::ExpandSixPicks, FirstView::IdxRange,
         filter_source::kAskNumbers, false, {}, false},
        {FilterSource::SixBankerExpansion, "Gdanaganf", K::SixNumbers, OpeningMode::ExpandSixBankers,
         FirstView::IdxRange, filter_source::kAskNumbers, false, {}, false},
        {FilterSource::StoredSixExpansion, "GAganfMb", K::SixNumbers, OpeningMode::Keep, FirstView::IdxRange,
         filter_source::kAskNumbers, false, {}, false},
    }};
    return traits;
}

}  // namespace

const FilterSourceTraits& filterSourceTraits(FilterSource instance) {
    return allTraits()[static_cast<size_t>(instance)];
}

namespace filter_source {
QString caption(qint64 count) { return kCaptionHead + QString::number(count) + kCaptionTail; }
}  // namespace filter_source
