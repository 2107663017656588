"""What `cmake --install` puts below the prefix, in its components."""
_NOTICES = ("THIRD-PARTY-NOTICES.md", "krvcmd.cdx.json")
_GUIDES = ("guide", "cheat-sheet", "glossary", "troubleshooting", "fleet", "remote-servers", "remote-protocol", "real-jukebox",
           "rehearse-a-script", "krvsim", "durations", "layout", "simulated-service")

PROGRAM = {
    "bin/krvcmd",
    "share/bash-completion/completions/krvcmd",
    "share/zsh/site-functions/_krvcmd",
    "share/fish/vendor_completions.d/krvcmd.fish",
    "share/krvcmd/completion/krvcmd.ps1",
    "share/man/man1/krvcmd.1",
    *(f"share/doc/krvcmd/{guide}.md" for guide in _GUIDES),
    *(f"share/doc/krvcmd/{name}" for name in _NOTICES),
}
DEVELOPMENT = {
    "include/krv_sdk.h",
    "lib/pkgconfig/krv-sdk.pc",
    "lib/cmake/krv-sdk/krv-sdk-config.cmake",
    "lib/cmake/krv-sdk/krv-sdk-config-version.cmake",
    "share/man/man3/krv-sdk.3",
    "share/doc/krvcmd-dev/examples/krv-sdk-example.c",
}


def simulator(library_dir):
    return {
        f"{library_dir}/libkrvSdk64.so",
        "bin/krvsim",
        "share/bash-completion/completions/krvsim",
        "share/zsh/site-functions/_krvsim",
        "share/fish/vendor_completions.d/krvsim.fish",
        "share/krvcmd/completion/krvsim.ps1",
        "share/man/man1/krvsim.1",
        "share/man/man5/krvsim-layout.5",
        "share/doc/krvcmd-simulator/examples/demonstration.toml",
        *(f"share/doc/krvcmd-simulator/{name}" for name in _NOTICES),
    }


def jukebox(library_dir):
    return {
        f"{library_dir}/libkrvJukebox64.so",
        "bin/krvadm",
        "share/bash-completion/completions/krvadm",
        "share/zsh/site-functions/_krvadm",
        "share/fish/vendor_completions.d/krvadm.fish",
        "share/krvcmd/completion/krvadm.ps1",
        "share/man/man1/krvadm.1",
        *(f"share/doc/krvcmd-jukebox/{name}" for name in _NOTICES),
    }
