#include "platform/linux/JsonPreferenceDomain.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <deque>
#include <mutex>
#include <set>
#include <utility>

#include "base/AtomicFile.h"
#include "base/FileDescriptor.h"
#include "base/Iso8601.h"
#include "platform/linux/FileLock.h"
#include "platform/linux/JsonPreferenceDocument.h"

namespace quillmeter {

namespace {

namespace fs = std::filesystem;
using Kind = PreferenceProblem::Kind;

constexpr std::size_t maximumProblems = 8;

// Tells one state of the file from another. The file that was read stays open meanwhile, so that no later one can get
// its number.
struct FileState {
  int error = 0;  // errno of asking; all else is 0 then
  dev_t device = 0;
  ino_t number = 0;
  std::int64_t size = 0;
  std::int64_t modifiedAt = 0;  // nanoseconds
  std::int64_t changedAt = 0;   // nanoseconds; a permission that comes back changes only this
  friend bool operator==(const FileState&, const FileState&) = default;
};

std::int64_t nanoseconds(const timespec& time) {
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

FileState stateFrom(const struct stat& status) {
  return {0, status.st_dev, status.st_ino, status.st_size, nanoseconds(status.st_mtim), nanoseconds(status.st_ctim)};
}

FileState stateOf(const fs::path& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0) return FileState{.error = errno};
  return stateFrom(status);
}

bool meansMissing(int error) {
  return error == ENOENT || error == ENOTDIR;
}

// Reads at most `limit` bytes; a longer file gives limit + 1 of them. The errno when reading fails.
tl::expected<std::string, int> readUpTo(int fd, std::size_t expectedSize, std::size_t limit) {
  std::string bytes(std::min(expectedSize, limit) + 1, '\0');
  std::size_t filled = 0;
  while (filled <= limit) {
    if (filled == bytes.size()) bytes.resize(std::min(bytes.size() * 2, limit + 1));
    const ssize_t count = ::read(fd, bytes.data() + filled, bytes.size() - filled);
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return tl::unexpected(errno);
    if (count == 0) break;
    filled += static_cast<std::size_t>(count);
  }
  bytes.resize(filled);
  return bytes;
}

// "...json.unreadable-20261121T075000Z", with a number behind it when that name is taken.
fs::path nameAside(const fs::path& file, Date now, int number) {
  std::string stamp = formatIso8601(Date{now.microseconds - now.microseconds % Date::microsecondsPerSecond});
  std::erase_if(stamp, [](char c) { return c == '-' || c == ':'; });
  fs::path name = file;
  name += ".unreadable-" + stamp;
  if (number > 1) name += "-" + std::to_string(number);
  return name;
}

int countAside(const fs::path& file) {
  const std::string prefix = file.filename().string() + ".unreadable-";
  int count = 0;
  std::error_code error;
  for (fs::directory_iterator it(file.parent_path(), error), end; !error && it != end; it.increment(error)) {
    if (it->path().filename().string().starts_with(prefix)) ++count;
  }
  return count;
}

using EncodedChanges = std::vector<std::pair<std::string, std::optional<JsonPreferenceEntry>>>;

// Absent when any key or value has no text.
std::optional<EncodedChanges> encode(const PreferenceChanges& changes) {
  EncodedChanges encoded;
  for (const auto& [key, value] : changes) {
    auto entry = value ? makeJsonPreferenceEntry(*value) : std::nullopt;
    if (value.has_value() != entry.has_value() || !isJsonPreferenceKey(key)) return std::nullopt;
    encoded.emplace_back(key, std::move(entry));
  }
  return encoded;
}

}  // namespace

struct JsonPreferenceDomain::State {
  enum class Contents { missing, good, unparsable, unreadable };

  State(std::string domainName, fs::path path, const Clock& systemClock, JsonPreferenceOptions domainOptions)
      : name(std::move(domainName)),
        file(std::move(path)),
        clock(systemClock),
        options(domainOptions),
        lock(fs::path(file) += ".lock") {}

  void look();
  void lookBeforeRead() {
    if (!loaded || freshness == PreferenceFreshness::everyRead) look();
  }
  void load(const FileState& seen);
  Contents read(FileDescriptor opened, FileState& seen, JsonPreferenceEntries& result);
  void replaceEntries(JsonPreferenceEntries next);
  bool changesNothing(const EncodedChanges& changes) const;
  tl::expected<void, PreferenceProblem> moveAside();
  tl::expected<void, PreferenceProblem> write(JsonPreferenceEntries next);
  void report(PreferenceProblem problem);
  PreferenceProblem problem(Kind kind, int error) const { return {kind, file, error, {}}; }

  const std::string name;
  const fs::path file;
  const Clock& clock;
  const JsonPreferenceOptions options;
  FileLock lock;

  std::mutex mutex;  // guards all below, and lock
  PreferenceFreshness freshness = PreferenceFreshness::everyRead;
  bool loaded = false;
  Contents contents = Contents::missing;
  FileState fileState;
  FileDescriptor openFile;  // of fileState
  int readError = 0;        // why contents is unreadable
  JsonPreferenceEntries entries;
  std::set<std::string, std::less<>> changedByOthers;
  std::deque<PreferenceProblem> problems;
};

// Reads the file when it is not the one that was read last.
void JsonPreferenceDomain::State::look() {
  const FileState seen = stateOf(file);
  if (!loaded || seen != fileState) load(seen);
}

void JsonPreferenceDomain::State::load(const FileState& seen) {
  const bool isFirst = !loaded;
  loaded = true;
  fileState = seen;
  FileDescriptor opened(::open(file.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK));
  JsonPreferenceEntries next;
  if (opened) {
    contents = read(std::move(opened), fileState, next);
  } else {
    readError = errno;
    contents = meansMissing(readError) ? Contents::missing : Contents::unreadable;
    openFile.reset();
  }
  if (contents == Contents::unreadable) report(problem(Kind::unreadable, readError));
  if (contents == Contents::unparsable) report(problem(Kind::unparsable, 0));
  // What cannot be read now does not undo what was read before.
  if (contents == Contents::unreadable || contents == Contents::unparsable) return;
  if (isFirst) {
    entries = std::move(next);
  } else {
    replaceEntries(std::move(next));
  }
}

JsonPreferenceDomain::State::Contents JsonPreferenceDomain::State::read(FileDescriptor opened, FileState& seen,
                                                                        JsonPreferenceEntries& result) {
  openFile = std::move(opened);
  struct stat status {};
  if (::fstat(openFile.get(), &status) != 0) {
    readError = errno;
    return Contents::unreadable;
  }
  // What was opened counts, not what stood there a moment before.
  seen = stateFrom(status);
  if (!S_ISREG(status.st_mode)) {
    readError = S_ISDIR(status.st_mode) ? EISDIR : EINVAL;
    openFile.reset();
    return Contents::unreadable;
  }
  if (static_cast<std::uint64_t>(status.st_size) > maximumFileBytes) return Contents::unparsable;
  const auto bytes = readUpTo(openFile.get(), static_cast<std::size_t>(status.st_size), maximumFileBytes);
  if (!bytes) {
    readError = bytes.error();
    return Contents::unreadable;
  }
  if (bytes->size() > maximumFileBytes) return Contents::unparsable;
  auto parsed = parseJsonPreferences(*bytes);
  if (!parsed) return Contents::unparsable;
  result = std::move(*parsed);
  return Contents::good;
}

void JsonPreferenceDomain::State::replaceEntries(JsonPreferenceEntries next) {
  for (const auto& [key, entry] : next) {
    const auto known = entries.find(key);
    if (known == entries.end() || known->second != entry) changedByOthers.insert(key);
  }
  for (const auto& [key, entry] : entries) {
    if (!next.contains(key)) changedByOthers.insert(key);
  }
  entries = std::move(next);
}

bool JsonPreferenceDomain::State::changesNothing(const EncodedChanges& changes) const {
  return std::ranges::all_of(changes, [this](const auto& change) {
    const auto known = entries.find(change.first);
    if (!change.second) return known == entries.end();
    // Of values that were read before the file was torn none is stored any more.
    return contents != Contents::unparsable && known != entries.end() && known->second.value == change.second->value;
  });
}

tl::expected<void, PreferenceProblem> JsonPreferenceDomain::State::moveAside() {
  // Where the file is a link, what it leads to is moved, beside itself; the link stays for the new file.
  std::error_code error;
  const fs::path actual = fs::canonical(file, error);
  if (error) return tl::unexpected(problem(Kind::unwritable, error.value()));
  if (countAside(actual) >= maximumKeptAside) return tl::unexpected(problem(Kind::unparsable, EEXIST));
  for (int number = 1; number <= maximumKeptAside + 1; ++number) {
    const fs::path aside = nameAside(actual, clock.now(), number);
    if (::renameat2(AT_FDCWD, actual.c_str(), AT_FDCWD, aside.c_str(), RENAME_NOREPLACE) == 0) {
      report({Kind::keptAside, file, 0, aside});
      return {};
    }
    if (errno == EINVAL || errno == ENOSYS) {  // a file system without that flag; the lock keeps our own programs apart
      if (!fs::exists(fs::symlink_status(aside, error)) && ::rename(actual.c_str(), aside.c_str()) == 0) {
        report({Kind::keptAside, file, 0, aside});
        return {};
      }
      errno = EEXIST;
    }
    if (errno != EEXIST) return tl::unexpected(problem(Kind::unwritable, errno));
  }
  return tl::unexpected(problem(Kind::unparsable, EEXIST));
}

tl::expected<void, PreferenceProblem> JsonPreferenceDomain::State::write(JsonPreferenceEntries next) {
  const std::string text = serializeJsonPreferences(next);
  if (text.size() > maximumFileBytes) return tl::unexpected(problem(Kind::unwritable, EFBIG));
  if (contents == Contents::unparsable) {
    if (auto moved = moveAside(); !moved) return moved;
    contents = Contents::missing;
  }
  // The folder is there: the lock lies in it. A link may lead elsewhere, where none is made.
  auto written = replaceFileAtomically(file, text, {.createFolders = false, .synchronize = options.synchronize});
  if (!written) return tl::unexpected(problem(Kind::unwritable, written.error()));
  entries = std::move(next);
  contents = Contents::good;
  openFile = std::move(*written);
  struct stat status {};
  if (::fstat(openFile.get(), &status) == 0) {
    fileState = stateFrom(status);
  } else {
    loaded = false;  // read again at the next occasion
  }
  return {};
}

void JsonPreferenceDomain::State::report(PreferenceProblem problem) {
  if (std::ranges::find(problems, problem) != problems.end()) return;
  if (problems.size() == maximumProblems) problems.pop_front();
  problems.push_back(std::move(problem));
}

JsonPreferenceDomain::JsonPreferenceDomain(std::string name, fs::path file, const Clock& clock,
                                           JsonPreferenceOptions options)
    : state_(std::make_unique<State>(std::move(name), std::move(file), clock, options)) {}

JsonPreferenceDomain::~JsonPreferenceDomain() = default;

const std::string& JsonPreferenceDomain::name() const {
  return state_->name;
}

std::optional<PreferenceValue> JsonPreferenceDomain::get(std::string_view key) {
  const std::lock_guard guard(state_->mutex);
  state_->lookBeforeRead();
  const auto found = state_->entries.find(key);
  return found == state_->entries.end() ? std::nullopt : found->second.value;
}

bool JsonPreferenceDomain::contains(std::string_view key) {
  const std::lock_guard guard(state_->mutex);
  state_->lookBeforeRead();
  return state_->entries.contains(key);
}

std::optional<PreferenceSnapshot> JsonPreferenceDomain::snapshot() {
  const std::lock_guard guard(state_->mutex);
  state_->lookBeforeRead();
  if (state_->contents != State::Contents::good && state_->entries.empty()) return std::nullopt;
  PreferenceSnapshot snapshot;
  for (const auto& [key, entry] : state_->entries) snapshot.emplace(key, entry.value);
  return snapshot;
}

tl::expected<bool, PreferenceProblem> JsonPreferenceDomain::apply(const PreferenceChanges& changes) {
  auto encoded = encode(changes);
  if (!encoded) return tl::unexpected(state_->problem(Kind::invalidValue, EINVAL));
  State& state = *state_;
  const std::lock_guard guard(state.mutex);
  const auto unreadable = [&] { return tl::unexpected(state.problem(Kind::unreadable, state.readError)); };
  // What seems to be stored already is looked at first, so that it costs no lock and makes no folder. All else is
  // looked at under the lock.
  if (!state.loaded || state.contents == State::Contents::unreadable || state.changesNothing(*encoded)) state.look();
  if (state.contents == State::Contents::unreadable) return unreadable();
  if (state.changesNothing(*encoded)) return false;

  const auto hold = state.lock.acquire(state.options.lockPatience);
  if (!hold)
    return tl::unexpected(state.problem(hold.error() == ETIMEDOUT ? Kind::busy : Kind::unwritable, hold.error()));
  state.look();
  if (state.contents == State::Contents::unreadable) return unreadable();
  if (state.changesNothing(*encoded)) return false;
  JsonPreferenceEntries next = state.entries;
  for (auto& [key, entry] : *encoded) {
    if (entry) {
      next.insert_or_assign(std::move(key), std::move(*entry));
    } else {
      next.erase(key);
    }
  }
  if (auto written = state.write(std::move(next)); !written) return tl::unexpected(written.error());
  return true;
}

std::vector<std::string> JsonPreferenceDomain::refresh() {
  const std::lock_guard guard(state_->mutex);
  state_->look();
  const auto keys = std::exchange(state_->changedByOthers, {});
  return {keys.begin(), keys.end()};
}

void JsonPreferenceDomain::setFreshness(PreferenceFreshness freshness) {
  const std::lock_guard guard(state_->mutex);
  state_->freshness = freshness;
}

std::vector<PreferenceProblem> JsonPreferenceDomain::takeProblems() {
  const std::lock_guard guard(state_->mutex);
  const auto problems = std::exchange(state_->problems, {});
  return {problems.begin(), problems.end()};
}

}  // namespace quillmeter
