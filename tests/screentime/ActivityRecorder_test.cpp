#include "screentime/model/ActivityRecorder.h"

#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace quillmeter {
namespace {

constexpr double origin = 1'750'000'000;
const ActivityApp editor{"org.example.editor", "Editor"};
const ActivityApp browser{"org.example.browser", "Browser"};

Date at(double seconds) {
  return Date::fromSeconds(origin + seconds);
}

ActivityRecorder::Sample sampleAt(double seconds, double idle, std::optional<ActivityApp> app = editor,
                                  bool available = true) {
  return {at(seconds), 500 + seconds, idle, std::move(app), available};
}

std::string text(const std::vector<ActivitySpan>& spans) {
  std::string result;
  for (const auto& span : spans) {
    result += std::to_string(span.start.secondsSince(at(0))) + "-" + std::to_string(span.end.secondsSince(at(0))) +
              " " + span.app.name + "; ";
  }
  return result;
}

struct PairCase {
  const char* what;
  ActivityRecorder::Sample first;
  ActivityRecorder::Sample second;
  std::vector<ActivitySpan> expected;
};

ActivityRecorder::Sample jumped(ActivityRecorder::Sample sample, double seconds) {
  sample.date = Date{sample.date.microseconds + std::llround(seconds * 1e6)};
  return sample;
}

constexpr double nan = std::numeric_limits<double>::quiet_NaN();
constexpr double infinite = std::numeric_limits<double>::infinity();

TEST(ActivityRecorder, twoSamplesCreditTheActiveTimeBetweenThem) {
  const PairCase cases[] = {
      PairCase{"without input but below the limit", sampleAt(0, 10), sampleAt(1, 11), {{at(0), at(1), editor}}},
      PairCase{"the limit is reached in between", sampleAt(0, 59.5), sampleAt(1, 60.5), {{at(0), at(0.5), editor}}},
      PairCase{"input after a long absence", sampleAt(0, 120), sampleAt(1, 0.2), {{at(0.8), at(1), editor}}},
      PairCase{"the limit is reached, then input: two pieces",
               sampleAt(0, 58),
               sampleAt(4, 1),
               {{at(0), at(2), editor}, {at(3), at(4), editor}}},
      PairCase{
          "input before the limit is reached: one piece", sampleAt(0, 58), sampleAt(4, 2.5), {{at(0), at(4), editor}}},
      PairCase{"exactly at the limit", sampleAt(0, 60), sampleAt(1, 61), {}},
      PairCase{"an idle counter that lags by reading jitter is no input", sampleAt(0, 70), sampleAt(1, 70.995), {}},
      PairCase{"the longest gap that counts", sampleAt(0, 0), sampleAt(5, 5), {{at(0), at(5), editor}}},
      PairCase{"a longer gap", sampleAt(0, 0), sampleAt(6, 6), {}},
      PairCase{"no time passed", sampleAt(1, 0), sampleAt(1, 0), {}},
      PairCase{"the monotonic clock went back", sampleAt(5, 0), sampleAt(4, 0), {}},
      PairCase{"the wall clock jumps forward", sampleAt(0, 0), jumped(sampleAt(1, 1), 3600), {}},
      PairCase{"the wall clock jumps back", sampleAt(0, 0), jumped(sampleAt(1, 1), -3600), {}},
      PairCase{
          "drift just below the bound", sampleAt(0, 0), jumped(sampleAt(1, 1), 0.249), {{at(0), at(1.249), editor}}},
      PairCase{"drift at the bound", sampleAt(0, 0), jumped(sampleAt(1, 1), -0.25), {}},
      PairCase{"the first moment may not be counted", sampleAt(0, 0, editor, false), sampleAt(1, 1), {}},
      PairCase{"the second moment may not be counted", sampleAt(0, 0), sampleAt(1, 1, editor, false), {}},
      PairCase{"nothing was in front", sampleAt(0, 0, std::nullopt), sampleAt(1, 1), {}},
      PairCase{
          "the earlier application gets the time", sampleAt(0, 0), sampleAt(1, 1, browser), {{at(0), at(1), editor}}},
      PairCase{"idle unknown before", sampleAt(0, nan), sampleAt(1, 0), {}},
      PairCase{"idle infinite before", sampleAt(0, infinite), sampleAt(1, 0), {}},
      PairCase{"idle negative before", sampleAt(0, -1), sampleAt(1, 0), {}},
      PairCase{
          "idle unknown now: the first piece stands", sampleAt(0, 59.5), sampleAt(1, nan), {{at(0), at(0.5), editor}}},
      PairCase{"idle negative now credits nothing of the future", sampleAt(0, 70), sampleAt(1, -3), {}},
      PairCase{"an absurd idle time", sampleAt(0, 1e300), sampleAt(1, 1e300), {}},
  };
  for (const auto& [what, first, second, expected] : cases) {
    ActivityRecorder recorder;
    recorder.sample(first);
    EXPECT_TRUE(recorder.spans().empty()) << "one sample alone credits nothing";
    recorder.sample(second);
    EXPECT_EQ(recorder.spans(), expected) << what << ": " << text(recorder.spans());
  }
}

TEST(ActivityRecorder, backToBackSpansOfOneApplicationMergeAndASwitchSplits) {
  ActivityRecorder recorder;
  recorder.sample(sampleAt(0, 0, editor));
  recorder.sample(sampleAt(1, 0, editor));
  recorder.sample(sampleAt(2, 0, browser));  // the switch: the second before it was the editor's
  recorder.sample(sampleAt(3, 0, browser));
  recorder.sample(sampleAt(4, 0, editor));
  EXPECT_EQ(recorder.spans(), (std::vector<ActivitySpan>{{at(0), at(2), editor}, {at(2), at(4), browser}}));
}

TEST(ActivityRecorder, sameIdUnderAnotherNameIsAnotherSpan) {
  ActivityRecorder recorder;
  recorder.sample(sampleAt(0, 0, editor));
  recorder.sample(sampleAt(1, 0, ActivityApp{editor.id, "编辑器"}));
  recorder.sample(sampleAt(2, 0, editor));
  EXPECT_EQ(recorder.spans().size(), 2U);
}

TEST(ActivityRecorder, aPauseBelowAMillisecondDoesNotSplitButALongerOneDoes) {
  for (const double pause : {0.0005, 0.0009, 0.001, 0.01}) {
    ActivityRecorder recorder;
    recorder.restore({{at(-1), at(-pause), editor}});
    recorder.sample(sampleAt(0, 0));
    recorder.sample(sampleAt(1, 1));
    EXPECT_EQ(recorder.spans().size(), pause < 0.001 ? 1U : 2U) << pause;
  }
}

TEST(ActivityRecorder, timeThatWasCreditedBeforeTheClockWentBackIsNotCreditedAgain) {
  ActivityRecorder recorder;
  recorder.restore({{at(-10), at(2.5), browser}});
  for (int second = 0; second <= 4; ++second) recorder.sample(sampleAt(second, 0));
  EXPECT_EQ(recorder.spans(), (std::vector<ActivitySpan>{{at(-10), at(2.5), browser}, {at(2.5), at(4), editor}}));
}

TEST(ActivityRecorder, nothingIsCreditedAcrossABoundary) {
  ActivityRecorder recorder;
  recorder.sample(sampleAt(0, 0));
  recorder.resetBoundary();
  recorder.sample(sampleAt(1, 0));
  EXPECT_TRUE(recorder.spans().empty());
  recorder.sample(sampleAt(2, 0));
  EXPECT_EQ(recorder.spans(), (std::vector<ActivitySpan>{{at(1), at(2), editor}}));
}

TEST(ActivityRecorder, pruningCutsTheSpanAcrossTheDateAndTellsOfChangesOnly) {
  ActivityRecorder recorder;
  recorder.restore({{at(0), at(10), editor}, {at(10), at(20), browser}, {at(20), at(30), editor}});
  const auto revision = recorder.revision();
  recorder.prune(at(0));
  EXPECT_EQ(recorder.revision(), revision);
  recorder.prune(at(15));
  EXPECT_EQ(recorder.spans(), (std::vector<ActivitySpan>{{at(15), at(20), browser}, {at(20), at(30), editor}}));
  EXPECT_NE(recorder.revision(), revision);
  recorder.prune(at(20));
  EXPECT_EQ(recorder.spans(), (std::vector<ActivitySpan>{{at(20), at(30), editor}}));
}

TEST(ActivityRecorder, clearingForgetsTheLastSampleToo) {
  ActivityRecorder recorder;
  recorder.restore({{at(-10), at(-5), browser}});
  recorder.sample(sampleAt(0, 0));
  recorder.clear();
  recorder.sample(sampleAt(1, 0));
  EXPECT_TRUE(recorder.spans().empty());
}

}  // namespace
}  // namespace quillmeter
