// main() of the Windows test executables: COM and OLE initialised on the test thread, which
// is the apartment the controls live in, as in a host's user-interface thread.
#include <gtest/gtest.h>
#include <ole2.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (FAILED(OleInitialize(nullptr))) return 2;
    int rc = RUN_ALL_TESTS();
    OleUninitialize();
    return rc;
}
