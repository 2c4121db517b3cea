# Completion of kv for fish. What it offers comes from the program: kv complete WORD...

function __kv_complete
    set -l words (commandline --tokenize --cut-at-cursor --current-process)
    set -l word (commandline --current-token --cut-at-cursor | string unescape)
    set -l offers ($words[1] complete $words[2..] "$word" 2>/dev/null)
    switch "$offers[1]"
        case @files
            __fish_complete_path "$word"
        case @directories
            __fish_complete_directories "$word" ''
        case '*'
            string join -- \n $offers
    end
end

complete --command kv --no-files --arguments '(__kv_complete)'
