# Lists every storage and stream of a compound file with olefile, an independent reader:
# one line per element, "storage<TAB>path" or "stream<TAB>path<TAB>size<TAB>hex of the data".
import sys

import olefile

ole = olefile.OleFileIO(sys.argv[1], raise_defects=olefile.DEFECT_INCORRECT)
for entry in sorted(ole.listdir(streams=True, storages=True)):
    path = "/".join(entry)
    if ole.get_type(entry) == olefile.STGTY_STORAGE:
        print("storage\t" + path)
    else:
        data = ole.openstream(entry).read()
        print("stream\t%s\t%d\t%s" % (path, len(data), data.hex()))
ole.close()
