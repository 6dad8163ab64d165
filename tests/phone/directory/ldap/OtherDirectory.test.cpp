// The client against a directory server of another make.

#include "DirectoryCases.h"
#include "Ds389.h"

// One test for all cases: the server needs ten seconds to start.
TEST(OtherDirectory, IsSearchedLikeTheOne)
{
    // Sockets lie in it.
    const TemporaryFolder folder("/tmp");
    std::filesystem::create_directory(folder / "ca");
    std::filesystem::create_directory(folder / "server");
    TestAuthority authority(folder / "ca");
    const Ds389 server(folder / "server", DirectoryCase::people(), authority.issue());
    for (const auto& [name, make] : DirectoryCase::all()) {
        SCOPED_TRACE(name);
        make()->run({server.uri(), server.tlsUri(), authority.file()});
    }
}
