// The messages of the document's readers and of the walkers built on them. A message is printed
// at once, unless the thread that makes it has a message queue: a restore that reads its document
// on a second thread, ahead of its requests, queues that thread's messages so that each is
// printed in its place among the requests' own messages.
#pragma once
#include <cstddef>
#include <cstdio>

class MessageQueue {
public:
  // Takes the text of one message for `stream` (stdout or stderr).
  virtual void addMessage(std::FILE *stream, const char *text, std::size_t length) = 0;
  // Hands everything queued so far over at once: the thread may now wait, for input for example.
  virtual void handOver() = 0;

protected:
  ~MessageQueue() = default;
};

// The calling thread's messages go to `queue` from now on; nullptr prints them again.
void queueMessagesOfThisThread(MessageQueue *queue);

// Called before the thread waits for input: its queue, if any, hands over what it holds.
void handOverQueuedMessages();

// fprintf(stream, format, ...), or the same text handed to the thread's queue.
[[gnu::format(printf, 2, 3)]] void printMessage(std::FILE *stream, const char *format, ...);
