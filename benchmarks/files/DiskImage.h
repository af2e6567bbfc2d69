#pragma once

#include <filesystem>
#include <string>

#include "benchmarks/support/Programs.h"

/// An ext4 file system in a file of the folder, which only root may mount; deleted by the destructor.
class DiskImage {
public:
    explicit DiskImage(const std::string& folder) : m_image(folder + "/ext4.image"), m_path(folder + "/ext4") {
        std::filesystem::create_directory(m_path);
        m_mounted = RunCommand("{ truncate -s 3G '" + m_image + "' && mkfs.ext4 -q -N 400000 '" + m_image +
                               "' && mount -o loop '" + m_image + "' '" + m_path + "'; } > /dev/null 2>&1");
    }
    ~DiskImage() {
        if (m_mounted) RunCommand("umount '" + m_path + "'");
        std::filesystem::remove(m_image);
    }
    DiskImage(const DiskImage&) = delete;
    DiskImage& operator=(const DiskImage&) = delete;

    bool IsMounted() const { return m_mounted; }
    const std::string& Path() const { return m_path; }

private:
    std::string m_image, m_path;
    bool m_mounted;
};
