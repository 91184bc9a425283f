#include "restore/request_queue.h"

#include <pthread.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>

#include "document/messages.h"
#include "document/records.h"
#include "restore/record_ring.h"

namespace {

enum class RecordKind : std::uint32_t { message, request, end };

// The start of a queued record; its texts follow, each with a NUL.
struct RecordHead {
  RecordKind kind;
  int number;                // request: its texts' number; end: the walk's result
  std::FILE *stream;         // message: where it goes
  SendRequest send;          // request: what builds and sends it and reports its outcome
  std::uint32_t lengths[4];  // request: its texts; message: its text
};

// A request's texts are field values (a path, a name, an id, a rights list at most), so that a
// request always fits a record.
static_assert(sizeof(RecordHead) + kPathTextSize + kNameTextSize + kIdTextSize + kRightsListSize <=
              RecordRing::kLargestRecord);

class RequestQueue final : public MessageQueue {
public:
  // The walk's side.
  void addMessage(std::FILE *stream, const char *text, std::size_t length) override;
  void addRequest(SendRequest send, const RequestTexts &texts);
  void addEnd(int result);
  void handOver() override { ring_.publish(); }

  // This thread's side: carries out every record up to the walk's end; returns its result.
  int carryOutAll();

private:
  RecordRing ring_;
};

// The queue of the walk running on this thread, if any.
thread_local RequestQueue *walkQueue = nullptr;

void RequestQueue::addMessage(std::FILE *stream, const char *text, std::size_t length) {
  constexpr std::size_t kPiece = RecordRing::kLargestRecord - sizeof(RecordHead);
  do {
    const std::size_t piece = length < kPiece ? length : kPiece;
    char *record = ring_.reserve(sizeof(RecordHead) + piece);
    RecordHead head{RecordKind::message, 0, stream, nullptr, {static_cast<std::uint32_t>(piece)}};
    std::memcpy(record, &head, sizeof head);
    std::memcpy(record + sizeof head, text, piece);
    ring_.commit(sizeof head + piece);
    text += piece;
    length -= piece;
  } while (length > 0);
}

void RequestQueue::addRequest(SendRequest send, const RequestTexts &texts) {
  RecordHead head{RecordKind::request, texts.number, nullptr, send, {}};
  std::size_t size = sizeof head;
  for (int i = 0; i < 4; ++i) {
    head.lengths[i] = static_cast<std::uint32_t>(texts.text[i].size());
    size += head.lengths[i] + 1;
  }
  if (size > RecordRing::kLargestRecord) std::abort();  // the field sizes rule it out
  char *record = ring_.reserve(size);
  std::memcpy(record, &head, sizeof head);
  char *at = record + sizeof head;
  for (int i = 0; i < 4; ++i) {
    std::memcpy(at, texts.text[i].data(), head.lengths[i] + 1);
    at += head.lengths[i] + 1;
  }
  ring_.commit(size);
}

void RequestQueue::addEnd(int result) {
  char *record = ring_.reserve(sizeof(RecordHead));
  const RecordHead head{RecordKind::end, result, nullptr, nullptr, {}};
  std::memcpy(record, &head, sizeof head);
  ring_.commit(sizeof head);
  ring_.publish();
}

int RequestQueue::carryOutAll() {
  for (;;) {
    std::size_t size = 0;
    const char *record = ring_.next(size);
    RecordHead head;
    std::memcpy(&head, record, sizeof head);
    const char *text = record + sizeof head;
    switch (head.kind) {
    case RecordKind::message: std::fwrite(text, 1, head.lengths[0], head.stream); break;
    case RecordKind::request: {
      RequestTexts texts;
      texts.number = head.number;
      for (int i = 0; i < 4; ++i) {
        texts.text[i] = std::string_view(text, head.lengths[i]);
        text += head.lengths[i] + 1;
      }
      head.send(texts);
      break;
    }
    case RecordKind::end: ring_.release(); return head.number;
    }
    ring_.release();
  }
}

struct Walk {
  RequestQueue *queue;
  int (*walk)(void *context);
  void *context;
};

void *runWalk(void *argument) {
  const Walk &job = *static_cast<const Walk *>(argument);
  walkQueue = job.queue;
  queueMessagesOfThisThread(job.queue);
  const int result = job.walk(job.context);
  queueMessagesOfThisThread(nullptr);
  walkQueue = nullptr;
  job.queue->addEnd(result);
  return nullptr;
}

}  // namespace

int walkAheadOfRequests(int (*walk)(void *context), void *context) {
  RequestQueue *queue = new (std::nothrow) RequestQueue;
  if (queue == nullptr) return walk(context);
  Walk job{queue, walk, context};
  pthread_t thread;
  if (pthread_create(&thread, nullptr, runWalk, &job) != 0) {
    delete queue;
    return walk(context);
  }
  const int result = queue->carryOutAll();
  pthread_join(thread, nullptr);
  delete queue;
  return result;
}

int sendInTurn(SendRequest send, const RequestTexts &texts) {
  if (walkQueue == nullptr) return send(texts);
  walkQueue->addRequest(send, texts);
  return 0;
}
