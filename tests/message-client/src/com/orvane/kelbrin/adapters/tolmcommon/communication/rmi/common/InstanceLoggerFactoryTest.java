package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common;

import static org.junit.jupiter.api.Assertions.assertEquals;
import static org.junit.jupiter.api.Assertions.assertFalse;
import static org.junit.jupiter.api.Assertions.assertTrue;

import java.nio.file.Files;
import java.nio.file.Path;
import java.util.List;
import java.util.stream.Collectors;
import java.util.stream.IntStream;
import java.util.stream.Stream;
import org.junit.jupiter.api.AfterEach;
import org.junit.jupiter.api.Test;
import org.junit.jupiter.api.io.TempDir;

class InstanceLoggerFactoryTest {
    private static final String NEWEST = "message-client.0.log";

    @TempDir
    Path folder;

    @AfterEach
    void closeTheLog() {
        new InstanceLoggerFactory();
    }

    @Test
    void withAFolderTheLogIsAFileInIt() throws Exception {
        new InstanceLoggerFactory(folder.toString());

        InstanceLoggerFactory.getLogger().info("connected\r\nto a server");

        List<String> lines = Files.readAllLines(folder.resolve(NEWEST));
        assertEquals(1, lines.size());
        assertTrue(lines.get(0).matches("\\S+Z INFO \\[\\d+\\] connected to a server"), lines.get(0));
    }

    @Test
    void aPercentSignInTheFoldersNameIsTakenAsItIs() throws Exception {
        Path odd = Files.createDirectory(folder.resolve("100%g"));
        new InstanceLoggerFactory(odd.toString());

        InstanceLoggerFactory.getLogger().info("line");

        assertEquals(1, Files.readAllLines(odd.resolve(NEWEST)).size());
    }

    @Test
    void theLogIsRotatedAndItsOldestFileForgotten() throws Exception {
        new InstanceLoggerFactory(folder.toString());
        String line = "x".repeat(10_000);

        for (int i = 0; i < 700; ++i) {
            InstanceLoggerFactory.getLogger().info(line);
        }

        new InstanceLoggerFactory();
        assertEquals(IntStream.range(0, 5).mapToObj(age -> "message-client." + age + ".log").toList(), files());
        for (String file : files()) {
            assertTrue(Files.size(folder.resolve(file)) < 1_100_000, file);
        }
    }

    @Test
    void aLaterStartGoesOnInTheSameFile() throws Exception {
        new InstanceLoggerFactory(folder.toString());
        InstanceLoggerFactory.getLogger().info("first");
        new InstanceLoggerFactory(folder.toString());
        InstanceLoggerFactory.getLogger().info("second");

        assertEquals(2, Files.readAllLines(folder.resolve(NEWEST)).size());
    }

    @Test
    void withoutAUsableFolderNothingIsLoggedAndNothingFails() throws Exception {
        new InstanceLoggerFactory(folder.toString());
        for (InstanceLoggerFactory unused : List.of(new InstanceLoggerFactory(), new InstanceLoggerFactory(null),
                new InstanceLoggerFactory(""), new InstanceLoggerFactory(folder.resolve("missing").toString()))) {
            InstanceLoggerFactory.getLogger().severe("lost " + unused);
        }

        assertEquals("", Files.readString(folder.resolve(NEWEST)));
        assertFalse(Files.exists(folder.resolve("missing")));
    }

    private List<String> files() throws Exception {
        try (Stream<Path> files = Files.list(folder)) {
            return files.map(file -> file.getFileName().toString()).sorted().collect(Collectors.toList());
        }
    }
}
