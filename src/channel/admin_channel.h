// The admin request channel: an XML request is written at offset 0 of one of the file system's
// command files and the XML reply is read back from offset 0 of the same descriptor.
#pragma once
#include <cstddef>
#include <cstdio>
#include <string_view>

inline constexpr const char *kFilesCommandFile = "/_admin/Manage_QUILL/files.cmd";
inline constexpr const char *kManageCommandFile = "/_admin/Manage_QUILL/manage.cmd";

inline constexpr std::size_t kRequestBufferSize = 65536;
inline constexpr int kReplyBufferStep = 65536;
inline constexpr std::size_t kDescriptionSize = 4096;
inline constexpr std::size_t kReplyNameSize = 768;

// The request envelopes. A request is an opening text, the operation's elements, optionally
// <gemelPath/>, and the closing text, with nothing added between them.
inline constexpr char kVolumeRequestClose[] = "</quillRequest>";
inline constexpr char kVolumeRequestOpen[] =
    "<virtualIO><datastream name=\"command\"/></virtualIO><quillRequest>";
inline constexpr char kFileRequestClose[] = "</fileRequest>";
inline constexpr char kFileRequestOpen[] =
    "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest>";

// 1 unless -k: requests then carry <gemelPath/> so the paired shadow volume changes too.
extern int reflectOnGemel;
// The element itself, with its length; either way its data() is a string, never null.
inline std::string_view gemelPiece() {
  return reflectOnGemel ? std::string_view("<gemelPath/>") : std::string_view("");
}

extern int adminFd;  // the one open command file; 0 means none
extern char requestBuffer[kRequestBufferSize];
extern char *replyBuffer;
extern int replyBufferSize;

// Allocates the 64 KiB reply buffer kept for the whole run; false when memory is exhausted.
bool allocateReplyBuffer();
void freeReplyBuffer();
// Grows the reply buffer by one step of 64 KiB, never past the signed 32-bit range. False, with
// the buffer freed and forgotten after "Error getting big enough buffer for trustees", when it
// cannot.
bool growReplyBuffer();

// Writes the first `length` bytes of requestBuffer (its strlen) at offset 0 of adminFd. Returns 0
// or the errno of the failing call.
int sendRequest(std::size_t length);

// Reads the reply from offset 0 of adminFd, finds replyElement, then <result value="N">,
// <description> and (when name is given) the <name> after it. Returns 0 when a result was
// found, kOwnFailure for an unrecognised reply or a buffer failure, or an errno value.
int receiveReply(const char *replyElement, int *result, std::size_t descriptionSize,
                 char *description, std::size_t nameSize, char *name);

// What the file system answered to one request.
struct Reply {
  int result = 0;
  char description[kDescriptionSize];
  char name[kReplyNameSize];
};

// Sends requestBuffer and reads its reply, looking for replyElement. Returns 0 when a result came
// back (in reply), non-zero after the channel's own message. The reply's description and name,
// which are printed only for a refused request, are read only when the result is not 0; they
// are empty otherwise.
// `length` is the request's strlen.
int exchangeRequest(std::string_view replyElement, Reply &reply, std::size_t length);

// exchangeRequest with its refusal reported: true when the request was accepted; false after the
// channel's message or, for a refusal, after `refusal` printed with args, the reply's description
// and its name.
template <typename... Args>
bool requestAccepted(std::string_view replyElement, std::size_t length, const char *refusal,
                     Args... args) {
  Reply reply;
  if (exchangeRequest(replyElement, reply, length) != 0) return false;
  if (reply.result == 0) return true;
  std::fprintf(stderr, refusal, args..., reply.description, reply.name);
  return false;
}

// Removes the <quillReply> wrapper and the <result .../result> element of a stored reply.
void stripReplyWrapper(char *text, int *length);

// A stand-in for the file system's command files, so that the restore walkers can run with no
// file system: it takes the request's bytes, writes a NUL-terminated reply text into replyBuffer
// (within replyBufferSize) and returns 0 or an errno value. The reply is then read as a reply from
// a command file would be. With a stand-in set, the section restores open and close no command
// file. trovan itself never sets one.
using RequestStandIn = int (*)(const char *request, std::size_t length, void *context);
void setRequestStandIn(RequestStandIn standIn, void *context);  // nullptr: the command files again
// Whether a stand-in answers the requests.
bool requestStandInSet();

// Puts the channel back to its start-of-run state: reflectOnGemel, adminFd (not closed), the
// request buffer, the reply buffer (freed) and the stand-in. For tests.
void resetAdminChannel();
