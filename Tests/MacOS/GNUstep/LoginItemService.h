#pragma once

namespace tarvex::test {

/// What the login items' service answers from now on. It stands apart for tests in plain C++.
void setLoginItemRefuses(bool refuses);

/// A number of SMAppServiceStatus.
void setLoginItemStatus(int status);

/// Where the program's bundle claims to be; null for where it is.
void setMainBundlePath(const char* path);

} // namespace tarvex::test
