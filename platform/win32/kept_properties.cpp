// SPDX-License-Identifier: MIT
#include "platform/win32/kept_properties.hpp"

#include <cstring>
// The second needs the first.
// clang-format off
#include <winioctl.h>
#include <winefs.h>
// clang-format on

#include "memory/owned.hpp"
#include "platform/failpoint.hpp"
#include "platform/win32/handle.hpp"
#include "platform/win32/paths.hpp"

namespace kv::platform::win32 {

namespace {

// A security descriptor that lets in the user, the administrators and the system.
class OwnerOnly {
  public:
    OwnerOnly() {
        alignas(TOKEN_USER) BYTE user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
        BYTE system[SECURITY_MAX_SID_SIZE];
        BYTE administrators[SECURITY_MAX_SID_SIZE];
        made_ = InitializeAcl(list(), sizeof list_, ACL_REVISION) != 0 && read_user(user, sizeof user) &&
                add(reinterpret_cast<TOKEN_USER *>(user)->User.Sid) &&
                make_sid(WinLocalSystemSid, system) && add(system) &&
                make_sid(WinBuiltinAdministratorsSid, administrators) && add(administrators) &&
                InitializeSecurityDescriptor(&descriptor_, SECURITY_DESCRIPTOR_REVISION) != 0 &&
                SetSecurityDescriptorDacl(&descriptor_, TRUE, list(), FALSE) != 0 &&
                SetSecurityDescriptorControl(&descriptor_, SE_DACL_PROTECTED, SE_DACL_PROTECTED) != 0;
    }
    OwnerOnly(const OwnerOnly &) = delete;
    OwnerOnly &operator=(const OwnerOnly &) = delete;

    bool made() const { return made_; }
    SECURITY_ATTRIBUTES *attributes() { return &attributes_; }

  private:
    // Of the thread, which may act for somebody else, or of the process.
    static bool read_user(void *user, DWORD size) {
        HANDLE token = nullptr;
        if (OpenThreadToken(GetCurrentThread(), TOKEN_QUERY, TRUE, &token) == 0 &&
            OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token) == 0) {
            return false;
        }
        const Handle open(token);
        return GetTokenInformation(token, TokenUser, user, size, &size) != 0;
    }
    static bool make_sid(WELL_KNOWN_SID_TYPE type, void *sid) {
        DWORD size = SECURITY_MAX_SID_SIZE;
        return CreateWellKnownSid(type, nullptr, sid, &size) != 0;
    }
    ACL *list() { return reinterpret_cast<ACL *>(list_); }
    bool add(PSID sid) { return AddAccessAllowedAce(list(), ACL_REVISION, FILE_ALL_ACCESS, sid) != 0; }

    static constexpr std::size_t kEntries = 3;
    alignas(ACL) BYTE list_[sizeof(ACL) + kEntries * (sizeof(ACCESS_ALLOWED_ACE) + SECURITY_MAX_SID_SIZE)];
    SECURITY_DESCRIPTOR descriptor_;
    SECURITY_ATTRIBUTES attributes_{sizeof attributes_, &descriptor_, FALSE};
    bool made_ = false;
};

// The same keys open it as the old one.
bool make_encrypted(const char *path, const char *old, SECURITY_ATTRIBUTES *security) {
    WidePath from;
    WidePath to;
    const DWORD error =
        widen(old, from) && widen(path, to)
            ? DuplicateEncryptionInfoFile(from.text, to.text, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, security)
            : DWORD{ERROR_FILENAME_EXCED_RANGE};
    SetLastError(error);
    return error == ERROR_SUCCESS;
}

DWORD attributes_of(HANDLE file) {
    BY_HANDLE_FILE_INFORMATION of;
    return GetFileInformationByHandle(file, &of) != 0 ? of.dwFileAttributes : INVALID_FILE_ATTRIBUTES;
}

// A new file is compressed or encrypted if its directory is; here it is to be what the old one is.
bool keep_storage(HANDLE file, const char *old) {
    const Handle known(open_entry(old));
    const DWORD wanted = known.valid() ? attributes_of(known.get()) : INVALID_FILE_ATTRIBUTES;
    if (wanted == INVALID_FILE_ATTRIBUTES) return false;
    if (((attributes_of(file) ^ wanted) & FILE_ATTRIBUTE_COMPRESSED) != 0) {
        const bool compressed = (wanted & FILE_ATTRIBUTE_COMPRESSED) != 0;
        USHORT format = compressed ? COMPRESSION_FORMAT_DEFAULT : COMPRESSION_FORMAT_NONE;
        DWORD size = 0;
        DeviceIoControl(file, FSCTL_SET_COMPRESSION, &format, sizeof format, nullptr, 0, &size, nullptr);
    }
    constexpr DWORD kStorage = FILE_ATTRIBUTE_COMPRESSED | FILE_ATTRIBUTE_ENCRYPTED;
    return ((attributes_of(file) ^ wanted) & kStorage) == 0;
}

// What a security descriptor says, and where.
struct Rights {
    memory::Vector<char> descriptor;
    SECURITY_DESCRIPTOR_CONTROL control = 0;
    PSID owner = nullptr;
    PSID group = nullptr;
    ACL *access = nullptr;  // null: everybody may do everything
    ACL *label = nullptr;   // may be null

    // False if the rights cannot be read. Where there are none, the descriptor is empty.
    bool read(HANDLE file) {
        constexpr SECURITY_INFORMATION kAll = OWNER_SECURITY_INFORMATION | GROUP_SECURITY_INFORMATION |
                                              DACL_SECURITY_INFORMATION | LABEL_SECURITY_INFORMATION;
        DWORD size = 0;
        while (GetKernelObjectSecurity(file, kAll, get(), static_cast<DWORD>(descriptor.size()), &size) ==
               0) {
            const DWORD error = GetLastError();
            if (error == ERROR_INVALID_FUNCTION || error == ERROR_NOT_SUPPORTED) {
                descriptor.clear();
                return true;
            }
            if (error != ERROR_INSUFFICIENT_BUFFER || size <= descriptor.size()) return false;
            descriptor.resize(size);
        }
        DWORD revision = 0;
        BOOL defaulted = FALSE;
        BOOL present = FALSE;
        return GetSecurityDescriptorControl(get(), &control, &revision) != 0 &&
               GetSecurityDescriptorOwner(get(), &owner, &defaulted) != 0 &&
               GetSecurityDescriptorGroup(get(), &group, &defaulted) != 0 &&
               GetSecurityDescriptorDacl(get(), &present, &access, &defaulted) != 0 &&
               GetSecurityDescriptorSacl(get(), &present, &label, &defaulted) != 0;
    }
    PSECURITY_DESCRIPTOR get() { return descriptor.data(); }
};

bool same_sid(PSID a, PSID b) {
    return a == nullptr || b == nullptr ? a == b : EqualSid(a, b) != 0;
}

bool same_list(ACL *a, ACL *b) {
    if (a == nullptr || b == nullptr) return a == b;
    if (a->AceCount != b->AceCount) return false;
    for (DWORD i = 0; i < a->AceCount; ++i) {
        void *of_a = nullptr;
        void *of_b = nullptr;
        if (GetAce(a, i, &of_a) == 0 || GetAce(b, i, &of_b) == 0) return false;
        const WORD size = static_cast<ACE_HEADER *>(of_a)->AceSize;
        if (size != static_cast<ACE_HEADER *>(of_b)->AceSize || std::memcmp(of_a, of_b, size) != 0)
            return false;
    }
    return true;
}

bool same_rights(const Rights &a, const Rights &b) {
    return same_sid(a.owner, b.owner) && same_sid(a.group, b.group) && same_list(a.access, b.access) &&
           same_list(a.label, b.label) && ((a.control ^ b.control) & SE_DACL_PROTECTED) == 0;
}

bool keep_rights(HANDLE file, HANDLE old) {
    Rights wanted;
    Rights made;
    if (!wanted.read(old) || !made.read(file)) return false;
    if (wanted.descriptor.empty() || same_rights(wanted, made)) return true;
    // Only what differs: who may not give a file away may keep it.
    SECURITY_INFORMATION changed = DACL_SECURITY_INFORMATION;
    if (!same_sid(wanted.owner, made.owner)) changed |= OWNER_SECURITY_INFORMATION;
    if (!same_sid(wanted.group, made.group)) changed |= GROUP_SECURITY_INFORMATION;
    if (!same_list(wanted.label, made.label)) changed |= LABEL_SECURITY_INFORMATION;
    // Without this the system forgets that the list was inherited.
    if ((wanted.control & SE_DACL_AUTO_INHERITED) != 0) {
        SetSecurityDescriptorControl(wanted.get(), SE_DACL_AUTO_INHERIT_REQ, SE_DACL_AUTO_INHERIT_REQ);
    }
    return SetKernelObjectSecurity(file, changed, wanted.get()) != 0 && made.read(file) &&
           same_rights(wanted, made);
}

}  // namespace

HANDLE make_temporary(const char *path, const char *old) {
    constexpr DWORD kAccess = GENERIC_READ | GENERIC_WRITE | DELETE;
    constexpr DWORD kAlone = 0;
    if (io_fails()) {
        SetLastError(ERROR_OPEN_FAILED);
        return INVALID_HANDLE_VALUE;
    }
    if (old == nullptr) {
        return CreateFileA(path, kAccess, kAlone, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr);
    }
    OwnerOnly security;
    if (!security.made()) return INVALID_HANDLE_VALUE;
    const DWORD attributes = GetFileAttributesA(old);
    const bool encrypted =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_ENCRYPTED) != 0;
    if (encrypted && !make_encrypted(path, old, security.attributes())) return INVALID_HANDLE_VALUE;
    Handle file(CreateFileA(path, kAccess | WRITE_DAC | WRITE_OWNER, kAlone, security.attributes(),
                            encrypted ? OPEN_EXISTING : CREATE_NEW, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (file.valid() && keep_storage(file.get(), old)) return file.release();
    if (file.valid()) {
        CloseHandle(file.release());
        DeleteFileA(path);
        SetLastError(ERROR_NOT_SUPPORTED);
    }
    return INVALID_HANDLE_VALUE;
}

bool keep_properties(HANDLE file, const char *old) {
    constexpr DWORD kAttributes =
        FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
    if (io_fails()) return false;
    const Handle known(CreateFileA(old, READ_CONTROL | FILE_READ_ATTRIBUTES, kShareAll, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    FILE_BASIC_INFO basic{};
    if (!known.valid() ||
        GetFileInformationByHandleEx(known.get(), FileBasicInfo, &basic, sizeof basic) == 0) {
        return false;
    }
    FILE_BASIC_INFO kept{};  // what is 0 stays
    kept.CreationTime = basic.CreationTime;
    kept.FileAttributes = (basic.FileAttributes & kAttributes) | FILE_ATTRIBUTE_ARCHIVE;
    return SetFileInformationByHandle(file, FileBasicInfo, &kept, sizeof kept) != 0 &&
           keep_rights(file, known.get());
}

bool has_other_streams(const char *path) {
    WidePath wide;
    if (!widen(path, wide)) return true;
    WIN32_FIND_STREAM_DATA stream;
    const HANDLE search = FindFirstStreamW(wide.text, FindStreamInfoStandard, &stream, 0);
    if (search == INVALID_HANDLE_VALUE) {
        const DWORD error =
            GetLastError();  // the first: there are none; the others: the volume has no streams
        return error != ERROR_HANDLE_EOF && error != ERROR_INVALID_PARAMETER &&
               error != ERROR_NOT_SUPPORTED && error != ERROR_INVALID_FUNCTION &&
               error != ERROR_CALL_NOT_IMPLEMENTED;
    }
    const bool others = FindNextStreamW(search, &stream) != 0;
    FindClose(search);
    return others;
}

}  // namespace kv::platform::win32
