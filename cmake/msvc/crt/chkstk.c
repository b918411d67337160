// __chkstk, which the compiler calls before a function takes more than a page of stack: it touches each
// page down to the new stack bottom so that the guard page moves as it should. The platform's runtime
// links it statically; Windows' kernel32.dll does not export it (Wine's does, so without this the DLL
// would load under Wine and not on Windows). Size in rax; every register but r10, r11 and the flags
// is kept.
__asm__(".globl __chkstk\n"
        "__chkstk:\n"
        "    subq $16, %rsp\n"
        "    movq %r10, (%rsp)\n"
        "    movq %r11, 8(%rsp)\n"
        "    xorq %r11, %r11\n"
        "    leaq 24(%rsp), %r10\n"
        "    subq %rax, %r10\n"
        "    cmovbq %r11, %r10\n"
        "    movq %gs:16, %r11\n"
        "    cmpq %r11, %r10\n"
        "    jae 2f\n"
        "    andw $0xF000, %r10w\n"
        "1:\n"
        "    leaq -4096(%r11), %r11\n"
        "    movb $0, (%r11)\n"
        "    cmpq %r11, %r10\n"
        "    jne 1b\n"
        "2:\n"
        "    movq (%rsp), %r10\n"
        "    movq 8(%rsp), %r11\n"
        "    addq $16, %rsp\n"
        "    ret\n");
