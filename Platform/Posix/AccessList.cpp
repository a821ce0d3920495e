#include "Platform/Posix/AccessList.h"

#if defined(__linux__)
#include <sys/xattr.h>
#endif

namespace tarvex {

#if defined(__linux__)

namespace {

constexpr const char* attribute = "system.posix_acl_access";

} // namespace

AccessList::AccessList(const std::string& path) {
    const ssize_t size = ::getxattr(path.c_str(), attribute, nullptr, 0);
    if (size <= 0) {
        return;
    }
    entries_.resize(static_cast<std::size_t>(size));
    const ssize_t length = ::getxattr(path.c_str(), attribute, entries_.data(), entries_.size());
    entries_.resize(length > 0 ? static_cast<std::size_t>(length) : 0);
}

void AccessList::applyTo(const FileDescriptor& file) const {
    if (isExtended()) {
        static_cast<void>(::fsetxattr(file.get(), attribute, entries_.data(), entries_.size(), 0));
    }
}

void AccessList::clear(const FileDescriptor& file) {
    static_cast<void>(::fremovexattr(file.get(), attribute));
}

#else

AccessList::AccessList(const std::string& /*path*/) {}

void AccessList::applyTo(const FileDescriptor& /*file*/) const {}

void AccessList::clear(const FileDescriptor& /*file*/) {}

#endif

} // namespace tarvex
