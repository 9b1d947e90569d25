// The resource file as a section of its own: allocated, so that stripping a program leaves it, and
// retained, so that the linker does although no code refers to it.
    .section .orvek_rsrc, "aR", %progbits
    .balign 8
    .incbin ORVEK_RESOURCES

    .section .note.GNU-stack, "", %progbits
