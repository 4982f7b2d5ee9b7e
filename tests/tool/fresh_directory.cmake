# Makes DIR afresh holding copies of FILES, and removes the directories ALSO (earlier results).
# -DDIR=... -DFILES=a;b [-DALSO=c;d]
file(REMOVE_RECURSE "${DIR}" ${ALSO})
file(MAKE_DIRECTORY "${DIR}")
file(COPY ${FILES} DESTINATION "${DIR}")
