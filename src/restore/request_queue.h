// A restore walk that reads its document ahead of its requests.
//
// The walk runs on a second thread. Each request it makes, as the texts the request is built
// from, and each message it prints, are queued in order; the calling thread builds and sends each
// request, reads its reply and reports the outcome, and prints each message, in that order. The
// requests, the output and the result are the same as when the walk runs alone; only the reading
// of the document now overlaps the file system's work.
#pragma once
#include <string_view>

// The texts (and one number) that a request is built from and its outcome reported with. Each
// text is followed by a NUL byte, so that its data() is also a C string.
struct RequestTexts {
  std::string_view text[4] = {"", "", "", ""};
  int number = 0;
};

// Builds a request from its texts, sends it, reads its reply and reports the outcome. Returns 0
// on success, -1 on any failure.
using SendRequest = int (*)(const RequestTexts &texts);

// Runs walk(context) on a second thread while this thread carries out what it queues. Returns
// the walk's result once all of that is done. Runs the walk here, as usual, when no second thread
// can be had.
int walkAheadOfRequests(int (*walk)(void *context), void *context);

// send(texts) now; on a walk thread, queued in its turn (0 is then returned at once).
int sendInTurn(SendRequest send, const RequestTexts &texts);
