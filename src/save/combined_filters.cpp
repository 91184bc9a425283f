#include "save/combined_filters.h"

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string_view>

#include "save/element_feed.h"
#include "save/filter_search.h"
#include "save/info_filters.h"
#include "save/tag_search.h"

// The path filter run after the removal sees the text with the removed elements gone. It sees
// the same tags, at the same places once the gaps are closed, as it would in the text as read,
// provided that
//   - no removed element lies across a tag the path filter uses (an element's start tag, its end
//     tag, or its path tags), nor inside the part of an element from "<path>" through the end of
//     "</path>" and of the compared value, whose length and bytes decide the element's fate;
//   - closing the gap cannot join the text around a removed element into a new tag: none of the
//     tags holds a line feed, so a removed element that starts the text or follows a line feed
//     (as each one does in the info files) joins nothing.
// Then the filter's decisions on the text as read are its decisions on the removal's result, and
// the text left is the text as read without the removed and the filtered-out elements. Each
// removed element is checked as it is met; the first one that breaks a condition hands the rest
// over to the two filters in turn, from a place where both are still exactly in step.

namespace {

using info_scan::Compactor;
using info_scan::ForwardSearch;
using info_scan::kNone;
using info_scan::removalEnd;
static_assert(kNotInside == kNone, "a path not inside an element reads as one not found");

constexpr std::string_view kPathOpen = "<path>";
constexpr std::string_view kPathClose = "</path>";

// The elements the removal drops, in order, each found when it is asked for.
class Removals {
public:
  Removals(const char *text, std::size_t size, const char *startTag, const char *endTag)
      : text_(text), size_(size), starts_(text, size, startTag), ends_(text, size, endTag),
        endTagLength_(std::strlen(endTag)) {
    find(starts_.from(0));
  }

  // The next element to drop is [begin(), end()); begin() is kNone after the last one, so that
  // it lies beyond any place. When missingEnd(), the element has no end tag and end() is unset.
  std::size_t begin() const { return begin_; }
  std::size_t end() const { return end_; }
  bool missingEnd() const { return missingEnd_; }
  void next() { find(starts_.fromNear(end_)); }

private:
  void find(std::size_t at) {
    begin_ = at;
    if (at == kNone) return;
    const std::size_t endTag = ends_.from(at);
    if (endTag == kNone)
      missingEnd_ = true;
    else
      end_ = removalEnd(text_, size_, endTag + endTagLength_);
  }

  const char *text_;
  std::size_t size_;
  ForwardSearch starts_;
  ForwardSearch ends_;
  std::size_t endTagLength_;
  std::size_t begin_ = kNone;
  std::size_t end_ = 0;
  bool missingEnd_ = false;
};

// An element's start and end tags, bounded as the path filter bounds them.
struct ElementTags {
  explicit ElementTags(const char *elementName) {
    std::snprintf(start, sizeof start, "<%s>", elementName);
    std::snprintf(end, sizeof end, "</%s>", elementName);
  }
  char start[kFilterStartTagMax + 1];
  char end[kFilterEndTagMax + 1];
};

class CombinedFilters {
public:
  CombinedFilters(char *text, int *length, std::size_t size, const char *path, char *scratch,
                  const char *elementName, const char *removalStart, const char *removalEnd)
      : text_(text), length_(length), size_(size), path_(path), scratch_(scratch),
        elementName_(elementName), removalStart_(removalStart), removalEnd_(removalEnd),
        valueOffset_(std::strcmp(elementName, "file") == 0 ? kFilePathValueOffset
                                                           : kDirectoryPathValueOffset),
        tags_(elementName), endTagLength_(std::strlen(tags_.end)),
        removals_(text, size, removalStart, removalEnd), compactor_(text) {}

  // Both filters; the removal's status, and the size left in *sizeLeft.
  int run(std::size_t *sizeLeft, bool *inTurn);

private:
  enum class Step { kNext, kDone, kFailed, kInTurn };

  // The places of the next element, found ahead a batch at a time while that can be done; null
  // when the element is to be found by the searches.
  const ElementPlaces *nextPlaces();
  Step element(std::size_t p);
  Step judge(std::size_t p, std::size_t e, std::size_t open, std::size_t close);
  Step restWithoutEndTag(std::size_t p);
  Step tail();
  // Closing the gap of a removed element that starts at `at` cannot make a new tag.
  bool joinsNothing(std::size_t at) const { return at == 0 || text_[at - 1] == '\n'; }
  // Closes the gap of a removed element on its own (it lies before an element, or inside one
  // that stays).
  void closeGap(std::size_t begin, std::size_t end) {
    compactor_.drop(begin, end);
    resume_ = end;
    removed_ += end - begin;
  }
  // The path filter leaves its scratch space empty unless the removal left no text at all.
  void clearScratch() {
    if (removed_ < size_) scratch_[0] = '\0';
  }
  int finishInTurn(std::size_t *sizeLeft);
  int missingEndTag() const {
    std::fprintf(stderr, "Missing end tag : %s\n", removalEnd_);
    return -1;
  }

  // Does the text at `at`, with `available` bytes before the element's end tag, begin with the
  // path? A path of up to eight bytes is compared as one word.
  bool startsWithPath(const char *at, std::size_t available) const {
    if (pathWord_.size == 0 || available < 8)
      return std::memcmp(at, path_.data(), path_.size()) == 0;
    std::uint64_t word;
    std::memcpy(&word, at, 8);
    return ((word ^ pathWord_.word) & pathWord_.mask) == 0;
  }

  char *text_;
  int *length_;
  std::size_t size_;
  std::string_view path_;
  char *scratch_;
  const char *elementName_;
  const char *removalStart_;
  const char *removalEnd_;
  std::size_t valueOffset_;
  ElementTags tags_;
  std::size_t endTagLength_;
  Removals removals_;
  Compactor compactor_;
  ForwardSearch starts_{text_, size_, tags_.start};
  ForwardSearch ends_{text_, size_, tags_.end};
  ForwardSearch opens_{text_, size_, kPathOpen};
  ForwardSearch closes_{text_, size_, kPathClose};
  // The path as a word when it has one to eight bytes.
  PreparedTag pathWord_ =
      path_.size() >= 1 && path_.size() <= 8 ? prepareTag(path_) : PreparedTag{nullptr, 0, 0, 0, 0};
  ElementSearch elements_{prepareTag(tags_.start), prepareTag(tags_.end), prepareTag(kPathOpen),
                          prepareTag(kPathClose)};
  bool batches_ = elements_.start.size >= 3 && elements_.end.size >= 3;
  ElementFeed feed_{elements_, text_, 0, batches_ ? size_ : 0};
  const ElementPlaces *batch_ = nullptr;
  std::size_t batchSize_ = 0;
  std::size_t batchNext_ = 0;
  // Where the next element is searched from, in the text as read and in the compacted text.
  std::size_t from_ = 0;
  std::size_t fromLeft_ = 0;
  // Every removed element that starts before this place has been closed, and none runs past it.
  std::size_t resume_ = 0;
  // The size left and the length once the pass is over.
  std::size_t sizeLeft_ = 0;
  // The number of characters the removal takes out, of the elements closed or gone with a
  // filtered-out element.
  std::size_t removed_ = 0;
};

int CombinedFilters::run(std::size_t *sizeLeft, bool *inTurn) {
  for (;;) {
    fromLeft_ = compactor_.keep(from_);
    resume_ = from_;
    Step step;
    if (const ElementPlaces *places = nextPlaces(); places != nullptr) {
      step = judge(places->start, places->end, places->path, places->pathEnd);
    } else {
      const std::size_t p = starts_.fromNear(from_);
      step = p == kNone ? tail() : element(p);
    }
    if (step == Step::kNext) continue;
    if (step == Step::kFailed) return missingEndTag();
    if (step == Step::kInTurn) {
      if (inTurn != nullptr) *inTurn = true;
      return finishInTurn(sizeLeft);
    }
    *sizeLeft = sizeLeft_;
    return 0;
  }
}

// Each element of a batch starts at the first start tag from the end tag of the one before on.
// That is also the first from where the one before ends when it is dropped, unless one starts in
// between (which takes a '<' in the element's name); then, as once the batches stop short near
// the end of the text, the searches find the rest. Whatever the searches do next (closing the
// text's gaps ahead of the batches too) comes after the feed has stopped.
const ElementPlaces *CombinedFilters::nextPlaces() {
  if (!batches_) return nullptr;
  if (batchNext_ == batchSize_) {
    batch_ = feed_.next(&batchSize_);
    batchNext_ = 0;
    if (batch_ == nullptr) {
      batches_ = false;
      return nullptr;
    }
  }
  const ElementPlaces &places = batch_[batchNext_++];
  if (places.start >= from_) return &places;
  batches_ = false;
  feed_.stop();
  return nullptr;
}

// One element starting at p, found by the searches.
CombinedFilters::Step CombinedFilters::element(std::size_t p) {
  const std::size_t e = ends_.fromNoting(p, opens_, closes_);
  if (e == kNone) return restWithoutEndTag(p);
  return judge(p, e, opens_.from(p), closes_.from(p));
}

// The element [p, e + end tag): judged on the text as read when no removed element gets in the
// way. open and close are where "<path>" and "</path>" first occur from p on, or kNone when
// they do not occur by e.
CombinedFilters::Step CombinedFilters::judge(std::size_t p, std::size_t e, std::size_t open,
                                             std::size_t close) {
  // Only an element whose path tags and compared value lie inside it is judged here.
  if (open == kNone || close == kNone || close < open + kPathOpen.size()) return Step::kInTurn;
  const std::size_t value = open + valueOffset_;
  std::size_t judged = close + kPathClose.size();
  if (value + path_.size() > judged) judged = value + path_.size();
  if (judged > e) return Step::kInTurn;
  const bool keep =
      close - open - kPathOpen.size() >= path_.size() && startsWithPath(text_ + value, e - value);

  // The removed elements up to the end of this one lie before it, or inside it after the part
  // judged; those inside go with the element when it goes.
  const std::size_t limit = e + endTagLength_;
  std::size_t goneWithIt = 0;
  while (removals_.begin() < limit) {
    if (removals_.missingEnd()) return Step::kFailed;
    const std::size_t begin = removals_.begin();
    const std::size_t end = removals_.end();
    const bool before = begin >= from_ && end <= p;
    const bool inside = begin >= judged && end <= e;
    if (!joinsNothing(begin) || !(before || inside)) return Step::kInTurn;
    if (before || keep)
      closeGap(begin, end);
    else
      goneWithIt += end - begin;
    removals_.next();
  }
  removed_ += goneWithIt;
  if (keep) {
    from_ = e;
  } else {
    from_ = removalEnd(text_, size_, limit);
    compactor_.drop(p, from_);
  }
  return Step::kNext;
}

// An element without an end tag at p: from there on the text stays as the removal leaves it, and
// that rest goes to scratch.
CombinedFilters::Step CombinedFilters::restWithoutEndTag(std::size_t p) {
  // Its start tag must stay; the removed elements before it lie whole before it.
  const std::size_t startTagEnd = p + std::strlen(tags_.start);
  while (removals_.begin() < startTagEnd) {
    if (removals_.missingEnd()) return Step::kFailed;
    if (!joinsNothing(removals_.begin()) || removals_.begin() < from_ || removals_.end() > p)
      return Step::kInTurn;
    closeGap(removals_.begin(), removals_.end());
    removals_.next();
  }
  const std::size_t restAt = compactor_.keep(p);
  if (const Step step = tail(); step != Step::kDone) return step;
  const std::size_t rest = sizeLeft_ - restAt;
  std::memcpy(scratch_, text_ + restAt, rest);
  scratch_[rest] = '\0';
  *length_ -= static_cast<int>(rest);
  return Step::kDone;
}

// No element from here on: the removed elements still ahead go.
CombinedFilters::Step CombinedFilters::tail() {
  for (; removals_.begin() != kNone; removals_.next()) {
    if (removals_.missingEnd()) return Step::kFailed;
    if (!joinsNothing(removals_.begin())) return Step::kInTurn;
    closeGap(removals_.begin(), removals_.end());
  }
  const std::size_t dropped = compactor_.finish(size_);
  sizeLeft_ = size_ - dropped;
  *length_ -= static_cast<int>(dropped);
  clearScratch();
  return Step::kDone;
}

// The rest done by the two filters in turn: the removal from where all is closed, then the path
// filter from where the next element is searched for, on the compacted text.
int CombinedFilters::finishInTurn(std::size_t *sizeLeft) {
  // The text ahead is about to change.
  feed_.stop();
  compactor_.keep(resume_);
  ForwardSearch starts(text_, size_, removalStart_);
  ForwardSearch ends(text_, size_, removalEnd_);
  const std::size_t endLength = std::strlen(removalEnd_);
  for (std::size_t p = starts.from(resume_); p != kNone;) {
    const std::size_t e = ends.from(p);
    if (e == kNone) return missingEndTag();
    const std::size_t next = removalEnd(text_, size_, e + endLength);
    compactor_.drop(p, next);
    removed_ += next - p;
    p = starts.fromNear(next);
  }
  const std::size_t left = size_ - compactor_.finish(size_);
  clearScratch();
  int restLength = static_cast<int>(left - fromLeft_);
  const std::size_t restLeft =
      filterByPathWhole(text_ + fromLeft_, &restLength, path_.data(), scratch_, elementName_);
  *sizeLeft = fromLeft_ + restLeft;
  *length_ = static_cast<int>(fromLeft_) + restLength;
  return 0;
}

}  // namespace

int removeAndFilterByPath(char *text, int *length, const char *startName, const char *endName,
                          const char *path, char *scratch, const char *elementName,
                          std::size_t *sizeLeft, bool *inTurn) {
  const bool plain = text == nullptr || length == nullptr || startName == nullptr ||
                     endName == nullptr || path == nullptr || scratch == nullptr ||
                     elementName == nullptr || *length < 1 ||
                     std::strchr(elementName, '\n') != nullptr;
  if (inTurn != nullptr) *inTurn = plain;
  if (plain) {
    // Nothing to do together: the two in turn.
    const int status = removeElementsWhole(text, length, startName, endName);
    *sizeLeft = length == nullptr || *length < 0 ? 0 : static_cast<std::size_t>(*length);
    if (status != 0) return status;
    *sizeLeft = filterByPathWhole(text, length, path, scratch, elementName);
    return 0;
  }
  char startTag[kRemoveStartTagMax + 1];
  char endTag[kRemoveEndTagMax + 1];
  std::snprintf(startTag, sizeof startTag, "<%s>", startName);
  std::snprintf(endTag, sizeof endTag, "</%s>", endName);
  text[*length] = '\0';
  CombinedFilters filters(text, length, static_cast<std::size_t>(*length), path, scratch,
                          elementName, startTag, endTag);
  return filters.run(sizeLeft, inTurn);
}
