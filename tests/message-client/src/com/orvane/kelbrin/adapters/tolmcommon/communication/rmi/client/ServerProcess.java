package com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.client;

import com.orvane.kelbrin.adapters.tolmcommon.communication.rmi.common.MessageServer;
import java.io.BufferedReader;
import java.io.File;
import java.io.InputStreamReader;
import java.net.URISyntaxException;
import java.nio.file.Path;

/** A test server in a process of its own, so that it can go away as a server does: with all its connections. */
final class ServerProcess implements AutoCloseable {
    private final Process process;
    private final int port;

    ServerProcess(int wantedPort) throws Exception {
        process = new ProcessBuilder(System.getProperty("java.home") + "/bin/java", "-cp",
                archiveOf(ServerProcess.class) + File.pathSeparator + archiveOf(MessageServer.class),
                ServerProcess.class.getName(), Integer.toString(wantedPort))
                        .redirectError(ProcessBuilder.Redirect.INHERIT).start();
        port = Integer.parseInt(new BufferedReader(new InputStreamReader(process.getInputStream())).readLine());
    }

    /** Not the process's own class path: JUnit loads what it tests by itself. */
    private static Path archiveOf(Class<?> type) throws URISyntaxException {
        return Path.of(type.getProtectionDomain().getCodeSource().getLocation().toURI());
    }

    /** Serves until its input ends, which it does at the latest with the test's own end. */
    public static void main(String[] arguments) throws Exception {
        try (TestServer server = new TestServer(null, Integer.parseInt(arguments[0]))) {
            System.out.println(server.port());
            System.in.read();
        }
        System.exit(0);
    }

    String url() {
        return "rmi://" + TestServer.HOST + ":" + port;
    }

    int port() {
        return port;
    }

    @Override
    public void close() {
        goAway();
    }

    void goAway() {
        process.destroyForcibly().onExit().join();
    }
}
