// The undo history: 1,000 snapshots of a design of 200 KB through CTalvorUndoDoc::Add, against
// a raw sequential write of the same bytes in the same run (plain, and reserving its disk space
// ahead as the history file does), and the size of the history file after 100 and after 1,000
// snapshots (it must grow in proportion, not faster). Times are wall clock: both sides spend
// much of it in the kernel's page cache.
#include "host/base/designer_frame.h"
#include "platform/files/file_system.h"
#include "platform/files/temp_files.h"
#include "undo/undo_doc.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <fcntl.h>
#include <linux/falloc.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int Snapshots = 1000;
constexpr std::size_t DesignBytes = 200 * 1024;

// A form whose controls and properties come to 200 KB in the archive form, as a large design
// with several hundred controls does.
struct Design {
    CTVMDIFrameWnd frame;
    CTVContainerDoc form;
    Design() {
        frame.SetContainer(&form);
        frame.SetWindowText("Large form");
        frame.MoveWindow(0, 0, 1024, 768);
        char name[32], value[64];
        for (int c = 0; SerializedBytes() < DesignBytes; ++c) {
            std::snprintf(name, sizeof name, "Control%d", c);
            const int index = form.AddControl(name, "{8BD21D10-EC42-11CE-9E0D-00AA006002F3}");
            for (int p = 0; p < 12; ++p) {
                std::snprintf(name, sizeof name, "Property%d", p);
                std::snprintf(value, sizeof value, "value %d of control %d", p * 7919 % 1000, c);
                form.SetProperty(index, name, value);
            }
        }
    }
    std::size_t SerializedBytes() {
        CMemFile file;
        CArchive ar(&file, CArchive::store);
        form.Serialize(ar);
        ar.Close();
        return file.Data().size();
    }
    std::string Bytes() {
        CMemFile file;
        CArchive ar(&file, CArchive::store);
        form.Serialize(ar);
        ar.Close();
        return file.Data();
    }
    // Each snapshot differs from the last in one property, as after a user's edit.
    void Edit(int n) {
        char value[32];
        std::snprintf(value, sizeof value, "edit %06d", n);
        form.SetProperty(n % form.GetControlCount(), "Caption", value);
    }
};

long long FileSize(const CString& path) {
    struct stat st {};
    return ::stat(path.GetString(), &st) == 0 ? st.st_size : -1;
}

void BM_UndoAdd_1000Snapshots_200KB(benchmark::State& state) {
    Design design;
    const double bytesPerSnapshot = static_cast<double>(design.SerializedBytes());
    long long after100 = 0, after1000 = 0;
    for (auto _ : state) {
        state.PauseTiming();
        auto doc = std::make_unique<CTalvorUndoDoc>();
        doc->SetOperationObject(&design.frame);
        state.ResumeTiming();
        for (int n = 0; n < Snapshots; ++n) {
            design.Edit(n);
            if (!doc->Add(1, 2, TRUE))
                return state.SkipWithError("Add failed");
            if (n == 99) {
                state.PauseTiming();
                after100 = FileSize(doc->GetPathName());
                state.ResumeTiming();
            }
        }
        state.PauseTiming();
        after1000 = FileSize(doc->GetPathName());
        // The last snapshot loads back as it was saved: a fast wrong Add cannot win.
        const std::string saved = design.Bytes();
        design.form.RemoveAll();
        if (!doc->LoadFrame() || design.Bytes() != saved)
            return state.SkipWithError("the last snapshot does not load back");
        doc.reset();
        state.ResumeTiming();
    }
    state.SetBytesProcessed(
        static_cast<int64_t>(state.iterations() * Snapshots * bytesPerSnapshot));
    state.counters["design_bytes"] = bytesPerSnapshot;
    state.counters["file_MB_after_100"] = after100 / 1e6;
    state.counters["file_MB_after_1000"] = after1000 / 1e6;
    state.counters["growth_1000_vs_100"] = after100 > 0 ? double(after1000) / after100 : 0;
}
BENCHMARK(BM_UndoAdd_1000Snapshots_200KB)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

// The same bytes written one snapshot after the other into a file in the same folder, in one
// write call each, without flushing: the speed of the disk cache that Add competes with. With
// reserveAhead the file reserves its disk space ahead as the history file does (an eighth of
// its size at a time, at least 1 MiB), which spares the kernel work on every page: Add against
// that is Add against the best a plain writer could do with the same trick.
void RawSequentialWrite(benchmark::State& state, bool reserveAhead) {
    Design design;
    const std::string bytes = design.Bytes();
    char folder[260];
    GetTempPath(sizeof folder, folder);
    const std::string path = std::string(folder) + "talvor_raw_write.bin";
    for (auto _ : state) {
        const int fd = ::open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        if (fd < 0)
            return state.SkipWithError("cannot create the file");
        off_t size = 0, reserved = 0;
        for (int n = 0; n < Snapshots; ++n) {
            const off_t end = size + static_cast<off_t>(bytes.size());
            if (reserveAhead && end > reserved) {
                const off_t step = std::max<off_t>(off_t(1) << 20, size / 8);
                const off_t to = (end + step - 1) / step * step;
                if (::fallocate(fd, FALLOC_FL_KEEP_SIZE, reserved, to - reserved) == 0)
                    reserved = to;
            }
            if (!talvor::platform::WriteAll(fd, bytes.data(), bytes.size()))
                return state.SkipWithError("write failed");
            size = end;
        }
        if (reserveAhead)
            (void)::ftruncate(fd, size);
        ::close(fd);
        state.PauseTiming();
        ::unlink(path.c_str());
        state.ResumeTiming();
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Snapshots * bytes.size()));
}

void BM_RawSequentialWrite_1000Snapshots_200KB(benchmark::State& state) {
    RawSequentialWrite(state, false);
}
BENCHMARK(BM_RawSequentialWrite_1000Snapshots_200KB)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

void BM_RawSequentialWriteReservingAhead_1000Snapshots_200KB(benchmark::State& state) {
    RawSequentialWrite(state, true);
}
BENCHMARK(BM_RawSequentialWriteReservingAhead_1000Snapshots_200KB)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

// The archive form of the same design written 1,000 times into a file that only counts the
// bytes: the part of Add that no store can avoid, against which the rest is measured.
void BM_ArchiveForm_1000Snapshots_200KB(benchmark::State& state) {
    struct CountingFile : CFile {
        std::size_t bytes = 0;
        void Write(const void*, UINT count) override { bytes += count; }
    };
    Design design;
    const std::size_t expected = design.SerializedBytes();
    for (auto _ : state) {
        for (int n = 0; n < Snapshots; ++n) {
            CountingFile file;
            CArchive ar(&file, CArchive::store, 1 << 18);
            design.form.Serialize(ar);
            ar.Close();
            if (file.bytes != expected)
                return state.SkipWithError("the archive form has another size");
        }
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * Snapshots * expected));
}
BENCHMARK(BM_ArchiveForm_1000Snapshots_200KB)
    ->Unit(benchmark::kMillisecond)
    ->Iterations(3)
    ->UseRealTime();

} // namespace

BENCHMARK_MAIN();
