package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.server;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertNull;
import static org.junit.jupiter.api.Assertions.assertThrows;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client.DesktopMessageClient;
import java.nio.file.Files;
import java.nio.file.Path;
import java.util.ArrayList;
import java.util.Arrays;
import java.util.HashMap;
import java.util.List;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class ServerAnswersTest {
    @TempDir
    Path folder;

    @Test
    void eachMethodReturnsItsOwnText() throws Exception {
        try (ServerProcess server = ServerProcess.start("--answer", "onStartup=welcome", "--answer", "onUserLogon=a=b",
                "--answer", "onDataCollected=act 1", "--answer", "onExtendedDataCollected=act 2", "--answer",
                "onDesktopPoll=", "--answer", "onActionPerformed=thanks")) {
            DesktopMessageClient client = server.connect();

            assertEquals("welcome", client.onStartup("", null));
            assertEquals("a=b", client.onUserLogon(null, null, 0, null));
            assertEquals("act 1", client.onDataCollected(null, null));
            assertEquals("act 2", client.onExtendedDataCollected(null, new HashMap<>(), null));
            assertEquals("", client.onDesktopPoll(null, 0, ""));
            assertEquals("thanks", client.onActionPerformed(null, new HashMap<>(), ""));
        }
    }

    @Test
    void withoutARuleTheAnswerIsNull() throws Exception {
        try (ServerProcess server = ServerProcess.start()) {
            assertNull(server.connect().onStartup("", null));
        }
    }

    @Test
    void aRuleForEachThirdCallAnswersThese() throws Exception {
        try (ServerProcess server = ServerProcess.start("--answer", "onDataCollected/3=act")) {
            DesktopMessageClient client = server.connect();
            List<String> answers = new ArrayList<>();

            for (int call = 0; call < 6; call++) {
                answers.add(client.onDataCollected(null, null));
            }

            assertEquals(Arrays.asList(null, null, "act", null, null, "act"), answers);
        }
    }

    @Test
    void anAnswerOfAMegabyteComesOutOfAFile() throws Exception {
        String text = "0123456789abcdef".repeat(65536);
        Path file = Files.writeString(folder.resolve("answer"), text);
        try (ServerProcess server = ServerProcess.start("--answer", "onStartup=@" + file)) {
            assertEquals(text, server.connect().onStartup("", null));
        }
    }

    @Test
    void anOrderedFailureReachesTheClientAndTheServerGoesOn() throws Exception {
        try (ServerProcess server = ServerProcess.start("--fail", "onDataCollected=disk full", "--answer",
                "onDesktopPoll=alive")) {
            DesktopMessageClient client = server.connect();

            IllegalStateException failure =
                    assertThrows(IllegalStateException.class, () -> client.onDataCollected(null, null));

            assertEquals("disk full", failure.getMessage());
            assertEquals("alive", client.onDesktopPoll(null, 0, ""));
        }
    }

    @Test
    void aDelayedCallIsAnsweredAllTheSame() throws Exception {
        try (ServerProcess server = ServerProcess.start("--delay", "onStartup=50", "--answer", "onStartup=late")) {
            assertEquals("late", server.connect().onStartup("", null));
        }
    }
}
