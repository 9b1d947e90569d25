#include "Platform/Storage/ErrnoStatus.h"

#include <cerrno>

status_t ErrnoStatus(int error) {
    switch (error) {
        case ENOENT:
            return B_ENTRY_NOT_FOUND;
        case EACCES:
        case EPERM:
            return B_PERMISSION_DENIED;
        case EEXIST:
        case ENOTEMPTY:
            return B_FILE_EXISTS;
        case ENOTDIR:
            return B_NOT_A_DIRECTORY;
        case EISDIR:
            return B_IS_A_DIRECTORY;
        case ENAMETOOLONG:
            return B_NAME_TOO_LONG;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return B_DEVICE_FULL;
        case EROFS:
            return B_READ_ONLY_DEVICE;
        case ELOOP:
            return B_LINK_LIMIT;
        case EMFILE:
        case ENFILE:
            return B_NO_MORE_FDS;
        case ENOTSUP:
        case ENOSYS:
            return B_UNSUPPORTED;
        case ENOMEM:
            return B_NO_MEMORY;
        case E2BIG:
        case ERANGE:
            return B_BUFFER_OVERFLOW;
        case EINVAL:
        case EBADF:
            return B_BAD_VALUE;
        case EBUSY:
        case ETXTBSY:
            return B_BUSY;
        case EAGAIN:
            return B_WOULD_BLOCK;
        case EINTR:
            return B_INTERRUPTED;
        case ETIMEDOUT:
            return B_TIMED_OUT;
        case EIO:
            return B_IO_ERROR;
        default:
            return B_ERROR;
    }
}
