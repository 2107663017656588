#include "krvcmd/console/table/fit_columns.h"

#include <algorithm>
#include <limits>

namespace Ostrel::UI::Console {
namespace {

// Wider than any line, and far enough from the end of the number range to calculate with.
constexpr int64_t kUnlimited = std::numeric_limits<int64_t>::max() / 4;

constexpr int64_t kBlanksAroundCell = 2;

// The columns from the left that have room.
struct ColumnSurvey {
    int64_t columnCount;  // without those that are left out
    int64_t fixedSum = 0;
    int64_t fixedCount = 0;
};

ColumnSurvey SurveyColumns(int64_t room, std::span<const FittedColumn> columns) {
    ColumnSurvey survey{static_cast<int64_t>(columns.size())};
    int64_t used = 0;
    int64_t step = 0;
    int64_t leftOutCount = 0;
    for (size_t index = 0; index < columns.size(); ++index) {
        if (used + step > room) {
            survey.columnCount = static_cast<int64_t>(index) - 1;
            break;
        }
        used += step;
        const FittedColumn& column = columns[index];
        if (column.isLeftOut) {
            // The step stays, so the column before this one is counted once more.
            ++leftOutCount;
            continue;
        }
        const int64_t separator = index > 0 ? 1 : 0;
        bool isCounted = false;
        if (column.minWidth != 0) {
            step = column.minWidth + separator + kBlanksAroundCell;
        } else {
            step = column.width + separator + kBlanksAroundCell;
            if (used + step <= room) {
                survey.fixedSum += column.width;
                ++survey.fixedCount;
                isCounted = true;
            }
        }
        if (column.maxWidth > 0 && column.width > column.maxWidth) {
            survey.fixedSum += column.maxWidth;
            if (!isCounted) ++survey.fixedCount;
        }
    }
    survey.columnCount -= leftOutCount;
    return survey;
}

// Gives every elastic column among the surveyed ones an equal share of `excess`; the first of them get one
// position more while there is a remainder.
void ShareExcess(int64_t excess, const ColumnSurvey& survey, std::span<FittedColumn> columns) {
    const int64_t divisor =
        survey.fixedCount == survey.columnCount ? survey.columnCount : survey.columnCount - survey.fixedCount;
    const int64_t share = divisor > 0 ? excess / divisor : 0;
    int64_t remainder = divisor > 0 ? excess % divisor : 0;
    for (int64_t index = 0; index < survey.columnCount; ++index) {
        FittedColumn& column = columns[static_cast<size_t>(index)];
        if (column.minWidth == 0) continue;
        column.width = std::max(column.minWidth, share);
        if (remainder > 0) {
            ++column.width;
            --remainder;
        }
    }
}

}  // namespace

int64_t FitColumns(int64_t maxWidth, int64_t contentWidth, int64_t separatorLength,
                   std::span<FittedColumn> columns) {
    const int64_t lineLimit = maxWidth == 0 ? kUnlimited : maxWidth;
    const ColumnSurvey survey = SurveyColumns(lineLimit, columns);
    const int64_t separators = survey.columnCount > 0 ? (survey.columnCount - 1) * separatorLength : 0;
    const int64_t blanks = survey.columnCount * kBlanksAroundCell;
    const int64_t room = lineLimit - separators - blanks;

    if (contentWidth < room) return contentWidth + separators + blanks;
    if (contentWidth == room && survey.fixedCount == 0) return lineLimit;
    const int64_t excess = room - survey.fixedSum;
    if (excess > 0) ShareExcess(excess, survey, columns);
    return lineLimit;
}

}  // namespace Ostrel::UI::Console
